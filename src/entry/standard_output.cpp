#include "entry/standard_output.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace embrix {

namespace {

// How long a stopped reader is waited for between two looks for a signal.
constexpr int kLookMilliseconds = 500;

// What a pipe takes in one piece as soon as it takes anything, so that the write never waits.
constexpr std::size_t kPiece = 512;  // _POSIX_PIPE_BUF

bool isToldToEnd() {
  sigset_t pending;
  sigemptyset(&pending);
  if (::sigpending(&pending) != 0) return false;
  return sigismember(&pending, SIGTERM) == 1 || sigismember(&pending, SIGINT) == 1 ||
         sigismember(&pending, SIGHUP) == 1;
}

bool waitForRoom(int descriptor) {
  pollfd room = {descriptor, POLLOUT, 0};
  while (true) {
    const int ready = ::poll(&room, 1, kLookMilliseconds);
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
    if (isToldToEnd()) return false;
  }
}

}  // namespace

bool writeWhole(int descriptor, std::string_view text) {
  if (descriptor < 0) return false;  // which poll() would wait for
  while (!text.empty()) {
    if (!waitForRoom(descriptor)) return false;
    const ssize_t written = ::write(descriptor, text.data(), std::min(text.size(), kPiece));
    if (written < 0 && errno != EINTR && errno != EAGAIN) return false;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace embrix
