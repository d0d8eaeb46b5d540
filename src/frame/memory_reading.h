#pragma once

#include <cstdint>

namespace embrix {

struct MemoryReading {
  std::uint64_t usedBytes = 0;   // app, wired and compressed memory; no caches
  std::uint64_t totalBytes = 0;  // physical memory
  double pressure = 0;           // 0 (free) to 1 (exhausted)

  bool operator==(const MemoryReading&) const = default;
};

}  // namespace embrix
