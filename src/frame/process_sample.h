// One row of the raw process table with the kernel's cumulative counters.
#pragma once

#include <cstdint>
#include <optional>

#include "base/shared_text.h"

namespace embrix {

struct ProcessSample {
  std::int32_t pid = 0;
  std::int32_t ppid = 0;
  std::uint32_t uid = 0;  // effective user
  SharedText name;        // last component of the path, or the kernel's short name
  std::optional<SharedText> path;
  std::uint64_t startTime = 0;            // whole seconds since 1970
  std::optional<std::uint64_t> energyNJ;  // nanojoules so far; absent when unreadable
  std::uint64_t cpuNS = 0;                // user plus system time so far, nanoseconds
  std::uint64_t wakeups = 0;              // so far
  std::uint64_t footprint = 0;            // bytes

  // The decimal pid, a hyphen, the decimal start time: one process for its whole life. It follows
  // from the two fields and travels with the sample because it is made once in that life.
  SharedText id;

  bool operator==(const ProcessSample&) const = default;
};

// The text of ProcessSample::id, ProcessRow::id and ProcessFacts::id.
SharedText processID(std::int32_t pid, std::uint64_t startTime);

}  // namespace embrix
