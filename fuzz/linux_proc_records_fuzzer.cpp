// Any bytes as the kernel's texts about a process. What stands behind the name of a process cannot
// be moved by the name, whatever that holds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "hosts/linux/proc_records.h"

namespace {

void checkName(const std::string& name) {
  const std::string text =
      "42 (" + name + ") S 7 1 1 0 -1 0 0 0 0 0 11 12 0 0 20 0 3 0 5000 0 10 0\n";
  const auto stat = embrix::parseProcStat(text);
  if (!stat || stat->pid != 42 || stat->commandName != name || stat->state != 'S' ||
      stat->ppid != 7 || stat->userTicks != 11 || stat->systemTicks != 12 || stat->threads != 3 ||
      stat->startTicks != 5000 || stat->residentPages != 10) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  embrix::parseProcStat(text);
  embrix::parseSchedStat(text);
  embrix::parseEffectiveUser(text);
  embrix::parseBootTime(text);
  embrix::parseBusyTicks(text);
  checkName(text);
  return 0;
}
