#include "mesh/import_helper.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <mutex>

namespace vorn {
namespace {

// A helper that sends nothing for this long (it was forked from a process with other
// threads and might block on a lock one of them held) is stopped: the request fails
// rather than the game hanging.
constexpr int kQuietLimitMs = 60'000;

enum class Read { Done, Ended, Quiet };

// Reads exactly `size` bytes. Ended: the peer closed the channel (or it failed); Quiet:
// waiting was limited and the limit passed with nothing arriving.
Read ReadAll(int fd, char* p, std::size_t size, bool waitLimited) {
  while (size > 0) {
    if (waitLimited) {
      pollfd ready{fd, POLLIN, 0};
      const int n = ::poll(&ready, 1, kQuietLimitMs);
      if (n < 0 && errno == EINTR) continue;
      if (n == 0) return Read::Quiet;
      if (n < 0) return Read::Ended;
    }
    const ssize_t n = ::recv(fd, p, size, 0);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return Read::Ended;
    p += n;
    size -= static_cast<std::size_t>(n);
  }
  return Read::Done;
}

bool WriteAll(int fd, const char* p, std::size_t size) {
  while (size > 0) {
    // MSG_NOSIGNAL: a peer that is gone gives an error here, not SIGPIPE.
    const ssize_t n = ::send(fd, p, size, MSG_NOSIGNAL);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    p += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

// A message: its length as eight bytes, then its bytes.
bool SendMessage(int fd, std::string_view message) {
  const std::uint64_t size = message.size();
  return WriteAll(fd, reinterpret_cast<const char*>(&size), sizeof size) && WriteAll(fd, message.data(), size);
}

Read ReceiveMessage(int fd, std::string& message, bool waitLimited) {
  std::uint64_t size = 0;
  if (const Read r = ReadAll(fd, reinterpret_cast<char*>(&size), sizeof size, waitLimited); r != Read::Done) return r;
  if (size > message.max_size()) return Read::Ended;
  message.resize(size);
  return ReadAll(fd, message.data(), size, waitLimited);
}

[[noreturn]] void Serve(int fd, HelperHandler handler) {
  std::string request;
  for (;;) {
    if (ReceiveMessage(fd, request, false) != Read::Done) ::_exit(0);  // the game closed the channel
    if (!SendMessage(fd, handler(request))) ::_exit(0);
  }
}

class Helper {
 public:
  ~Helper() {
    if (owner_ == ::getpid()) Stop(true);
  }

  HelperAnswer Run(std::string_view request, HelperHandler handler) {
    std::lock_guard lock(mutex_);
    if (owner_ != ::getpid()) {
      // Forked from the process that started the helper: this copy of the channel is
      // not ours to use. Let go of it (the helper stays with its owner).
      if (fd_ >= 0) ::close(fd_);
      fd_ = -1;
      pid_ = -1;
    }
    if (pid_ > 0 && handler != handler_) Stop(true);
    // One that ended since the last request (killed from outside, say) is replaced
    // before this request rather than failing it.
    if (int status = 0; pid_ > 0 && ::waitpid(pid_, &status, WNOHANG) == pid_) {
      ::close(fd_);
      fd_ = -1;
      pid_ = -1;
    }
    HelperAnswer answer;
    if (pid_ <= 0 && !Start(handler)) return answer;
    const Read read = SendMessage(fd_, request) ? ReceiveMessage(fd_, answer.bytes, true) : Read::Ended;
    if (read == Read::Done) {
      answer.status = HelperAnswer::Status::Answered;
      return answer;
    }
    answer.bytes.clear();
    answer.status = HelperAnswer::Status::Died;
    answer.waitStatus = Stop(read == Read::Quiet);
    ++deaths_.count;
    deaths_.lastWaitStatus = answer.waitStatus;
    return answer;
  }

  HelperDeaths Deaths() {
    std::lock_guard lock(mutex_);
    return deaths_;
  }

 private:
  bool Start(HelperHandler handler) {
    int fds[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds) != 0) return false;
    const pid_t parent = ::getpid();
    std::fflush(nullptr);  // the helper must not write our buffered output a second time
    const pid_t pid = ::fork();
    if (pid < 0) {
      ::close(fds[0]);
      ::close(fds[1]);
      return false;
    }
    if (pid == 0) {
      // The helper holds none of the game's descriptors (display, audio, files) beyond
      // its channel and the standard streams, and ends with the game.
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      if (::getppid() != parent) ::_exit(0);
      const int fd = fds[1];
      ::close_range(3, static_cast<unsigned>(fd) - 1, 0);
      ::close_range(static_cast<unsigned>(fd) + 1, ~0U, 0);
      Serve(fd, handler);
    }
    ::close(fds[1]);
    fd_ = fds[0];
    pid_ = pid;
    owner_ = parent;
    handler_ = handler;
    return true;
  }

  // Ends the helper and gives how it ended. One whose channel closed is ending by
  // itself: it gets two seconds to do so, so that its own end is what is reported.
  int Stop(bool kill) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    int status = 0;
    if (pid_ > 0) {
      for (int waited = 0; !kill; ++waited) {
        const pid_t done = ::waitpid(pid_, &status, WNOHANG);
        if (done == pid_ || (done < 0 && errno != EINTR)) {
          pid_ = -1;
          return status;
        }
        kill = waited >= 2000;
        ::usleep(1000);
      }
      ::kill(pid_, SIGKILL);
      while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
      }
    }
    pid_ = -1;
    return status;
  }

  std::mutex mutex_;
  HelperDeaths deaths_;
  pid_t pid_ = -1;
  pid_t owner_ = -1;  // the process that started the helper
  int fd_ = -1;
  HelperHandler handler_ = nullptr;
};

Helper& TheHelper() {
  static Helper helper;
  return helper;
}

}  // namespace

HelperAnswer RunInImportHelper(std::string_view request, HelperHandler handler) {
  return TheHelper().Run(request, handler);
}

HelperDeaths ImportHelperDeaths() { return TheHelper().Deaths(); }

}  // namespace vorn
