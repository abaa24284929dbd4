#pragma once
// A helper process that runs the model library's reads for the game. Debian's library is
// built with its internal assertions on, and a corrupt file can fail one (its FBX
// tokenizers do) or worse, which ends the process that reads it. The helper is forked
// once and serves request after request; when one kills it, that request gets no answer
// and the next one forks a new helper. The game never runs the library itself, so what
// a file does to the library stays in the helper.
#include <cstdint>
#include <string>
#include <string_view>

namespace vorn {

// Runs in the helper: the answer to one request.
using HelperHandler = std::string (*)(std::string_view request);

struct HelperAnswer {
  enum class Status {
    Answered,     // `bytes` holds the handler's answer
    Died,         // the helper ended (or blocked for a minute and was stopped) on this request
    Unavailable,  // no helper could be started
  };
  Status status = Status::Unavailable;
  std::string bytes;
  int waitStatus = 0;  // how a helper that died ended, as waitpid gives it
};

// Sends `request` to the helper that runs `handler` (starting one when there is none)
// and waits for the answer. A process forked from the game after the helper started
// starts a helper of its own.
HelperAnswer RunInImportHelper(std::string_view request, HelperHandler handler);

// How many helpers died on a request so far, and how the last one ended (waitpid's
// status). For diagnostics: the fuzz target tells a library abort (a signal) from a
// sanitizer's report in the helper (an exit code).
struct HelperDeaths {
  std::uint64_t count = 0;
  int lastWaitStatus = 0;
};
HelperDeaths ImportHelperDeaths();

}  // namespace vorn
