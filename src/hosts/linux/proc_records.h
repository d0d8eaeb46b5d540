// Text of the kernel's per-process files, decoded. Nothing here opens a file.
//
// Every decoder answers absent for text that is cut short or is not what the kernel writes; numbers
// above 64 bits count as that.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace embrix {

// What a tick needs of /proc/<pid>/stat (proc(5)). The command name lies between the first "(" and
// the last ")", and holds any byte but NUL, blanks and brackets included.
struct ProcStat {
  std::int32_t pid = 0;
  std::string_view commandName;  // into the text that was decoded
  char state = '?';              // 'R', 'S', 'Z', …
  std::int32_t ppid = 0;
  std::uint64_t userTicks = 0;    // all threads, dead ones too; 1/sysconf(_SC_CLK_TCK) seconds
  std::uint64_t systemTicks = 0;  // likewise
  std::int64_t threads = 0;
  std::uint64_t startTicks = 0;     // since boot
  std::uint64_t residentPages = 0;  // 0 for kernel threads and zombies
};
std::optional<ProcStat> parseProcStat(std::string_view text);

// /proc/<pid>/schedstat: of the leading thread alone.
struct SchedStat {
  std::uint64_t runNS = 0;  // time on a CPU, nanoseconds
  // Times it was put on a CPU. It stands still in a thread that is never switched out.
  std::uint64_t timeSlices = 0;
};
std::optional<SchedStat> parseSchedStat(std::string_view text);

// The effective user of /proc/<pid>/status: the second number of "Uid:".
std::optional<std::uint32_t> parseEffectiveUser(std::string_view text);

// "btime" of /proc/stat: seconds since 1970 at which the machine started.
std::optional<std::uint64_t> parseBootTime(std::string_view text);

// Ticks that all CPUs together were busy since boot, of the "cpu " line of /proc/stat: user, nice,
// system, interrupts; neither idle time, nor what was stolen, nor guest time (user holds it).
std::optional<std::uint64_t> parseBusyTicks(std::string_view text);

}  // namespace embrix
