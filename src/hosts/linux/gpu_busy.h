// How busy the first graphics processor is.
//
//   gpu_busy_percent (amdgpu and others)     the driver's own figure
//   rc6 or idle residency (i915, xe)         100 × the share of the time since the last read in
//   which
//                                            the processor was not powered down: an upper bound of
//                                            its use, since it lingers awake after work
//
// Other drivers tell nothing. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/linux/system_file.h"

namespace embrix {

class GpuBusy {
 public:
  explicit GpuBusy(const std::string& root);

  // Percent, 0 to 100; `uptime` is now in seconds, suspend not counted. Absent without a processor
  // that tells, while it sleeps in a way that asking would end, and at the first read of a
  // residency.
  std::optional<int> read(double uptime);

  // Whether there is a graphics processor at all.
  bool hasDevice() const { return hasDevice_; }

 private:
  struct Residency {
    HeldFile milliseconds;  // powered down so far
    std::optional<std::int64_t> previous;
  };

  bool addCard(const std::string& card);
  std::optional<int> readResidencies(double uptime);

  bool hasDevice_ = false;
  std::optional<HeldFile> percent_;
  std::optional<HeldFile> powerState_;
  std::vector<Residency> residencies_;  // of each part of the processor
  std::optional<double> previousUptime_;
};

}  // namespace embrix
