#pragma once
// Music and sounds over SDL_mixer. The mixer opens on first use; on a machine without
// a sound card (CI, Xvfb) the real driver fails and SDL's dummy driver takes over, so
// every call works and plays in silence. One console line names the driver in use.
#include <memory>
#include <string>

struct Mix_Chunk;

namespace vorn {

// Opens the mixer once and returns the driver's name; RuntimeError when not even the
// dummy driver opens.
const std::string& OpenAudio();

// A decoded sound, played on a free mixer channel.
class Vorn_Sound {
 public:
  // RuntimeError naming the path when the file cannot be decoded.
  explicit Vorn_Sound(const std::string& path);

  // Plays on a free channel: loops extra repeats (0 plays once, -1 forever). With
  // every channel busy nothing plays, as a mixer without room does.
  void play(int loops = 0);
  // Stops the channel if it still plays this sound.
  void stop();
  bool IsPlaying() const;
  // Length in seconds at the mixer's rate.
  double get_length() const;

 private:
  std::shared_ptr<Mix_Chunk> chunk_;
  int channel_ = -1;
};

// The one music stream. Loading new music frees the old (which stops it).
namespace music {
// loopcount counts extra repeats (0 plays once, -1 forever); RuntimeError naming the
// path when the file cannot be decoded.
void Play(const std::string& path, int loopcount);
void Stop();
bool Playing();
}  // namespace music

}  // namespace vorn
