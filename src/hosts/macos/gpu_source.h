// The graphics processors' services in the I/O registry. Sampling thread only.
#pragma once

#include <optional>
#include <vector>

#include "host/gpu_source.h"
#include "hosts/macos/io_holder.h"

namespace embrix {

class MacGpuSource final : public GpuSource {
 public:
  MacGpuSource();

  std::optional<PropertyMap> performanceStatistics() override;

  // Of the processors that are there now: an external one can come and go.
  std::vector<GpuClient> clients() override;

 private:
  IoHolder accelerator_;  // the first
};

}  // namespace embrix
