// Counters of physical memory. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>

namespace embrix {

struct MemoryCounters {
  std::uint64_t internalPages = 0;
  std::uint64_t purgeablePages = 0;
  std::uint64_t wiredPages = 0;
  std::uint64_t compressorPages = 0;

  bool operator==(const MemoryCounters&) const = default;
};

class MemorySource {
 public:
  virtual ~MemorySource() = default;

  virtual std::uint64_t pageSize() = 0;       // bytes. Constant.
  virtual std::uint64_t physicalBytes() = 0;  // Constant.

  // Absent when unreadable.
  virtual std::optional<MemoryCounters> counters() = 0;

  // Percentage of memory that is free, as the system judges it; absent when unreadable.
  virtual std::optional<std::int32_t> freeLevel() = 0;
};

}  // namespace embrix
