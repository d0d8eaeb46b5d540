// The graphics processors by sysfs and the kernel's account of each open handle. Sampling thread
// only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/gpu_source.h"
#include "hosts/linux/drm_clients.h"
#include "hosts/linux/gpu_busy.h"

namespace embrix {

class LinuxGpuSource final : public GpuSource {
 public:
  // `awakeSeconds` is a clock that stands still while the machine sleeps, as the processor's own
  // counters do.
  LinuxGpuSource(const std::string& root, std::function<double()> awakeSeconds);

  // "Device Utilization %" alone.
  std::optional<PropertyMap> performanceStatistics() override;

  // Times in nanoseconds where the driver counts such.
  std::vector<GpuClient> clients() override;

 private:
  GpuBusy busy_;
  DrmClients clients_;
  std::function<double()> awakeSeconds_;
};

}  // namespace embrix
