#include "hosts/linux/log.h"

#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include <fmt/format.h>
#include <systemd/sd-journal.h>

namespace embrix {

void LinuxLog::error(std::string_view category, std::string_view text) {
  // Without a socket the journal's library drops the entry and reports success.
  if (::access(journalSocket_.c_str(), W_OK) == 0) {
    const std::string message(text);
    const std::string source(category);
    const int sent = sd_journal_send("MESSAGE=%s", message.c_str(), "PRIORITY=%d", LOG_ERR,
                                     "SYSLOG_IDENTIFIER=%s", kSubsystem, "EMBRIX_CATEGORY=%s",
                                     source.c_str(), nullptr);
    if (sent == 0) return;
  }
  const std::string line = fmt::format("{} [{}] {}\n", kSubsystem, category, text);
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace embrix
