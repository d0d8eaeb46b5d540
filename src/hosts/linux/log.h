#pragma once

#include <string>
#include <utility>

#include "host/log.h"

namespace embrix {

// The journal where there is one, standard error elsewhere.
class LinuxLog final : public Log {
 public:
  // Where a journal that runs takes entries.
  static constexpr const char* kJournalSocket = "/run/systemd/journal/socket";

  explicit LinuxLog(std::string journalSocket = kJournalSocket)
      : journalSocket_(std::move(journalSocket)) {}

  void error(std::string_view category, std::string_view text) override;

 private:
  std::string journalSocket_;
};

}  // namespace embrix
