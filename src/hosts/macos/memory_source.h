// The kernel's counters of physical memory. Sampling thread only.
#pragma once

#include <mach/mach_types.h>

#include "host/memory_source.h"

namespace embrix {

class MacMemorySource final : public MemorySource {
 public:
  MacMemorySource();

  std::uint64_t pageSize() override { return pageSize_; }
  std::uint64_t physicalBytes() override { return physicalBytes_; }
  std::optional<MemoryCounters> counters() override;
  std::optional<std::int32_t> freeLevel() override;

 private:
  host_t host_;  // asked for once: each asking would count one more reference to the port
  std::uint64_t pageSize_;
  std::uint64_t physicalBytes_;
};

// Bytes of memory that the machine has; 0 when it does not tell.
std::uint64_t physicalMemoryBytes();

}  // namespace embrix
