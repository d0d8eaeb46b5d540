// Who has used the graphics processors since the last look. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/hash_map.h"
#include "host/gpu_source.h"

namespace embrix {

class GPUUsageReader {
 public:
  // `source` must outlive the reader.
  explicit GPUUsageReader(GpuSource& source) : source_(source) {}

  // GPU time by pid since the read before, in units of the driver, positive entries only. A pid
  // that is seen for the first time has none, so that its whole past is never charged to one tick.
  // The map is the reader's own and stands until the next read.
  const HashMap<std::int32_t, std::uint64_t>& read();

  // The pid in a client's creator such as "pid 123, Safari"; absent for any other form.
  static std::optional<std::int32_t> pidOf(std::string_view creator);

 private:
  void collectTotals();

  GpuSource& source_;
  HashMap<std::int32_t, std::uint64_t> previous_;  // accumulated time by pid
  HashMap<std::int32_t, std::uint64_t> totals_;
  HashMap<std::int32_t, std::uint64_t> deltas_;
};

}  // namespace embrix
