#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include "entry/embrix_app.h"
#include "entry/standard_output.h"
#include "entry/window_library.h"
#include "host/native_host.h"

namespace {

// A standard stream that the caller closed would give its number to the next file that is opened,
// and a report would be printed into that. What is put there instead can only be read, so that a
// write to it still fails.
void fillStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // Takes the lowest number that is free, which is this one.
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  fillStandardStreams();
  // A reader who has seen enough ends the report, and a file that may not grow any further is a
  // failed write. Neither ends the program.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  const auto settings = embrix::nativeSettings();
  return embrix::EmbrixApp::run(
      std::vector<std::string>(argv, argv + argc),
      {.host = embrix::nativeHost,
       .session = embrix::nativeSession,
       .log = embrix::nativeLog,
       .settings = *settings,
       .identifier = embrix::nativeIdentifier(),
       .windows = [] { return embrix::WindowLibrary::load(embrix::nativeProgramPath()); },
       .print = [](std::string_view text) { return embrix::writeWhole(STDOUT_FILENO, text); },
       .complain = [](std::string_view text) { embrix::writeWhole(STDERR_FILENO, text); }});
}
