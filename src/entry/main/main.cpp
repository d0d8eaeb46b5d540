#include <csignal>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "entry/embrix_app.h"
#include "host/native_host.h"

namespace {

void write(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

}  // namespace

int main(int argc, char** argv) {
  // A reader who has seen enough ends the report, not the program.
  std::signal(SIGPIPE, SIG_IGN);
  const auto settings = embrix::nativeSettings();
  return embrix::EmbrixApp::run(std::vector<std::string>(argv, argv + argc),
                                {.host = embrix::nativeHost,
                                 .settings = *settings,
                                 .print = [](std::string_view text) { write(stdout, text); },
                                 .complain = [](std::string_view text) { write(stderr, text); }});
}
