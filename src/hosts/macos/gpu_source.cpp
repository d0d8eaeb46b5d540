#include "hosts/macos/gpu_source.h"

#include <utility>

#include "darwin/gpu_client.h"
#include "hosts/macos/autorelease_pool.h"
#include "hosts/macos/io_registry.h"

namespace embrix {

namespace {

constexpr const char* kAccelerator = "IOAccelerator";

}  // namespace

MacGpuSource::MacGpuSource() : accelerator_(firstService(kAccelerator)) {}

std::optional<PropertyMap> MacGpuSource::performanceStatistics() {
  if (!accelerator_) return std::nullopt;
  const AutoreleasePool pool;
  Property statistics = propertyOf(accelerator_.get(), "PerformanceStatistics");
  auto* map = std::get_if<PropertyMap>(&statistics.value);
  return map == nullptr ? std::nullopt : std::optional(std::move(*map));
}

std::vector<GpuClient> MacGpuSource::clients() {
  const AutoreleasePool pool;
  std::vector<GpuClient> clients;
  for (const IoHolder& accelerator : allServices(kAccelerator)) {
    for (const IoHolder& child : childrenOf(accelerator.get())) {
      clients.push_back(gpuClient(propertyOf(child.get(), "IOUserClientCreator"),
                                  propertyOf(child.get(), "AppUsage")));
    }
  }
  return clients;
}

}  // namespace embrix
