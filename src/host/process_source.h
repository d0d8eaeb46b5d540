// The raw process table. Used from the sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

// Cumulative counters of one process.
struct RawUsage {
  std::uint64_t userTime = 0;    // machine time units, see ProcessSource::ticksToNS
  std::uint64_t systemTime = 0;  // machine time units
  std::uint64_t packageIdleWakeups = 0;
  std::uint64_t interruptWakeups = 0;
  std::uint64_t footprint = 0;            // bytes
  std::optional<std::uint64_t> energyNJ;  // nanojoules; absent where the host cannot tell

  bool operator==(const RawUsage&) const = default;
};

struct RawProcess {
  std::int32_t pid = 0;
  std::int32_t ppid = 0;
  std::uint32_t uid = 0;          // effective user
  std::uint64_t startTime = 0;    // whole seconds since 1970
  std::string commandName;        // the kernel's short name, at most 16 bytes, any bytes
  std::optional<RawUsage> usage;  // absent when it could not be read

  bool operator==(const RawProcess&) const = default;
};

class ProcessSource {
 public:
  virtual ~ProcessSource() = default;

  // Nanoseconds in one machine time unit. Constant.
  virtual double ticksToNS() = 0;

  // Replaces `table` with one record for each process, in the kernel's order; zombies and processes
  // of other users are among them. Empty when the table cannot be read. Handing the same vector in
  // at each call lets its storage be used again.
  virtual void read(std::vector<RawProcess>& table) = 0;

  // The executable's path, or absent: kernel threads, vanished and forbidden processes. The bytes
  // are the file system's own and need not be UTF-8.
  virtual std::optional<std::string> executablePath(std::int32_t pid) = 0;
};

}  // namespace embrix
