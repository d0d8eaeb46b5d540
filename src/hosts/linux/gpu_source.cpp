#include "hosts/linux/gpu_source.h"

#include <utility>

namespace embrix {

LinuxGpuSource::LinuxGpuSource(const std::string& root, std::function<double()> awakeSeconds)
    : busy_(root), clients_(root), awakeSeconds_(std::move(awakeSeconds)) {}

std::optional<PropertyMap> LinuxGpuSource::performanceStatistics() {
  const auto percent = busy_.read(awakeSeconds_());
  if (!percent) return std::nullopt;
  return PropertyMap{{"Device Utilization %", *percent}};
}

std::vector<GpuClient> LinuxGpuSource::clients() {
  if (!busy_.hasDevice()) return {};
  return clients_.read();
}

}  // namespace embrix
