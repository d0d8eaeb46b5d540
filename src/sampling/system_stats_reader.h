// Memory in use, memory pressure and the graphics processor's utilisation. Keeps no state.
// Sampling thread only.
#pragma once

#include <optional>

#include "frame/memory_reading.h"
#include "host/gpu_source.h"
#include "host/memory_source.h"

namespace embrix {

class SystemStatsReader {
 public:
  // Both must outlive the reader.
  SystemStatsReader(GpuSource& gpu, MemorySource& memory) : gpu_(gpu), memory_(memory) {}

  // 0 (idle) to 1, as the processor says, not cut off at 1. Absent without a graphics processor and
  // when it tells no such number.
  std::optional<double> gpuUtilization();

  // Absent when the counters cannot be read or cannot be true. Pressure is 0 when the system does
  // not tell how much memory is free.
  std::optional<MemoryReading> memory();

 private:
  GpuSource& gpu_;
  MemorySource& memory_;
};

}  // namespace embrix
