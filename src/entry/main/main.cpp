#include <unistd.h>

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include "entry/embrix_app.h"
#include "entry/standard_output.h"
#include "host/native_host.h"

int main(int argc, char** argv) {
  // A reader who has seen enough ends the report, not the program.
  std::signal(SIGPIPE, SIG_IGN);
  const auto settings = embrix::nativeSettings();
  return embrix::EmbrixApp::run(
      std::vector<std::string>(argv, argv + argc),
      {.host = embrix::nativeHost,
       .session = embrix::nativeSession,
       .log = embrix::nativeLog,
       .settings = *settings,
       .identifier = embrix::nativeIdentifier(),
       .print = [](std::string_view text) { return embrix::writeWhole(STDOUT_FILENO, text); },
       .complain = [](std::string_view text) { embrix::writeWhole(STDERR_FILENO, text); }});
}
