#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/power_log_source.h"
#include "hosts/linux/sleep_journal.h"

namespace embrix {

// What the journal knows of sleep, in the power log's form; see powerLogLines for what it does not
// know.
class LinuxPowerLogSource final : public PowerLogSource {
 public:
  // Entries of the newest sleeps, oldest first.
  explicit LinuxPowerLogSource(std::function<std::vector<JournalEntry>()> readEntries);

  // Those of the journal below the root.
  explicit LinuxPowerLogSource(const std::string& root = "/");

  std::string read() override;

 private:
  std::function<std::vector<JournalEntry>()> readEntries_;
};

}  // namespace embrix
