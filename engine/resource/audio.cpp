// The mixer over SDL_mixer: opening with a fallback to the dummy driver, sounds on
// channels and the one music stream.
#include "resource/audio.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include "core/console.h"
#include "core/errors.h"

namespace vorn {
namespace {

constexpr int kChannels = 32;

bool try_open() {
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return false;
  if (Mix_OpenAudio(MIX_DEFAULT_FREQUENCY, MIX_DEFAULT_FORMAT, 2, 1024) == 0) return true;
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  return false;
}

std::string open_once() {
  Mix_Init(MIX_INIT_OGG);
  if (!try_open()) {
    // No sound card: the dummy driver mixes in silence, so scripts and tests still run.
    SDL_SetHint(SDL_HINT_AUDIODRIVER, "dummy");
    if (!try_open()) throw RuntimeError(std::string("audio: no driver opens, not even dummy: ") + Mix_GetError());
  }
  Mix_AllocateChannels(kChannels);
  const char* name = SDL_GetCurrentAudioDriver();
  std::string driver = name ? name : "unknown";
  console::print("Audio driver:", driver);
  return driver;
}

struct MusicHolder {
  Mix_Music* music = nullptr;
};
MusicHolder& current_music() {
  static MusicHolder holder;
  return holder;
}

}  // namespace

const std::string& OpenAudio() {
  // A failed open throws and is tried again at the next call.
  static const std::string driver = open_once();
  return driver;
}

Vorn_Sound::Vorn_Sound(const std::string& path) {
  OpenAudio();
  Mix_Chunk* chunk = Mix_LoadWAV(path.c_str());
  if (!chunk) throw RuntimeError("Vorn_Sound: cannot read " + path + ": " + Mix_GetError());
  chunk_.reset(chunk, Mix_FreeChunk);
}

void Vorn_Sound::play(int loops) {
  // SDL_mixer counts extra repeats as well: 0 plays once, -1 forever.
  channel_ = Mix_PlayChannel(-1, chunk_.get(), loops < -1 ? -1 : loops);
}

void Vorn_Sound::stop() {
  if (IsPlaying()) Mix_HaltChannel(channel_);
  channel_ = -1;
}

bool Vorn_Sound::IsPlaying() const {
  return channel_ >= 0 && Mix_Playing(channel_) != 0 && Mix_GetChunk(channel_) == chunk_.get();
}

double Vorn_Sound::get_length() const {
  int freq = 0, channels = 0;
  Uint16 format = 0;
  if (!Mix_QuerySpec(&freq, &format, &channels) || freq <= 0 || channels <= 0) return 0.0;
  const int bytesPerSample = (format & 0xFF) / 8;
  return static_cast<double>(chunk_->alen) / (static_cast<double>(freq) * channels * bytesPerSample);
}

namespace music {

void Play(const std::string& path, int loopcount) {
  OpenAudio();
  Mix_Music* loaded = Mix_LoadMUS(path.c_str());
  if (!loaded) throw RuntimeError("PlayMusic: cannot read " + path + ": " + Mix_GetError());
  MusicHolder& holder = current_music();
  if (holder.music) Mix_FreeMusic(holder.music);
  holder.music = loaded;
  // The loop count counts extra repeats (0 plays once, 2 plays three times). SDL_mixer
  // counts plays instead, and plays 0 as once too: translate.
  const int plays = loopcount < 0 ? -1 : loopcount + 1;
  if (Mix_PlayMusic(loaded, plays) != 0) throw RuntimeError("PlayMusic: cannot play " + path + ": " + Mix_GetError());
}

void Stop() {
  OpenAudio();
  Mix_HaltMusic();
}

bool Playing() { return current_music().music && Mix_PlayingMusic() != 0; }

}  // namespace music

}  // namespace vorn
