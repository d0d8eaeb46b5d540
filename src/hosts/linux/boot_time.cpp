#include "hosts/linux/boot_time.h"

#include <unistd.h>

#include <algorithm>

#include "hosts/linux/proc_files.h"
#include "hosts/linux/proc_records.h"

namespace embrix {

namespace {

std::uint64_t read(const std::string& procRoot) {
  // The line of interrupts before the boot time can be longer than a tick's files ever are.
  const auto text = ProcFiles(procRoot, 0).readWhole("stat");
  return text ? parseBootTime(*text).value_or(0) : 0;
}

}  // namespace

std::uint64_t bootTime(const std::string& procRoot) {
  if (procRoot != "/proc") return read(procRoot);
  static const std::uint64_t kOwn = read(procRoot);
  return kOwn;
}

std::uint64_t startTimeOf(std::uint64_t bootTime, std::uint64_t startTicks) {
  static const auto kTicksPerSecond =
      static_cast<std::uint64_t>(std::max(1L, ::sysconf(_SC_CLK_TCK)));
  return bootTime + startTicks / kTicksPerSecond;
}

}  // namespace embrix
