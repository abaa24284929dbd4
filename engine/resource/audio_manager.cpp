// The resource manager's music, sounds and fonts: files are found by name in the
// resource index. A name that matches several files takes the first.
#include <optional>
#include <variant>

#include "core/console.h"
#include "resource/res_manager.h"

namespace vorn {
namespace {

std::optional<std::string> first_path(const ResPath& found) {
  if (const auto* one = std::get_if<std::string>(&found)) return *one;
  if (const auto* many = std::get_if<std::vector<std::string>>(&found); many && !many->empty()) return many->front();
  return std::nullopt;
}

}  // namespace

void PyGameResManager::PlayMusic(const std::string& fileName, int loopcount) {
  const std::optional<std::string> MusicPath = first_path(GetResPath(fileName));
  if (MusicPath) music::Play(*MusicPath, loopcount);
}

void PyGameResManager::StopMusic() { music::Stop(); }

int PyGameResManager::PlaySound(const std::string& fileName) {
  const std::optional<std::string> SoundPath = first_path(GetResPath(fileName));
  if (!SoundPath) return -1;
  auto sound = std::make_shared<Vorn_Sound>(*SoundPath);
  soundDict.set(soundPlayCount, sound);
  sound->play();
  soundPlayCount += 1;
  return soundPlayCount - 1;
}

void PyGameResManager::StopSound(int soundID) {
  if (auto* sound = soundDict.find(soundID)) {
    (*sound)->stop();
    return;
  }
  console::print("No Find Sound");
}

std::shared_ptr<Vorn_Font> PyGameResManager::GetFont(const std::string& ttfFile, int fontSize, bool bold,
                                                     bool italic) {
  const std::optional<std::string> FontPath = first_path(GetResPath(ttfFile));
  if (!FontPath) return nullptr;
  auto newFont = std::make_shared<Vorn_Font>(*FontPath, fontSize);
  if (bold) newFont->set_bold(true);
  if (italic) newFont->set_italic(true);
  return newFont;
}

}  // namespace vorn
