#include "hosts/linux/power_log_source.h"

#include <utility>

#include "hosts/linux/power_log_lines.h"

namespace embrix {

namespace {

// Some four entries tell of one sleep: more than a month of a lid that is closed twice a day.
constexpr std::size_t kMostEntries = 512;

}  // namespace

LinuxPowerLogSource::LinuxPowerLogSource(std::function<std::vector<JournalEntry>()> readEntries)
    : readEntries_(std::move(readEntries)) {}

LinuxPowerLogSource::LinuxPowerLogSource(const std::string& root)
    : LinuxPowerLogSource([root] { return readSleepEntries(root, kMostEntries); }) {}

std::string LinuxPowerLogSource::read() {
  return powerLogLines(readEntries_());
}

}  // namespace embrix
