#include "darwin/gpu_client.h"

namespace embrix {

namespace {

using Times = std::vector<std::optional<std::uint64_t>>;

std::optional<Times> accumulatedTimes(const Property& usage) {
  const auto* contexts = std::get_if<PropertyList>(&usage.value);
  if (contexts == nullptr) return std::nullopt;
  Times times;
  for (const Property& context : *contexts) {
    const auto* map = std::get_if<PropertyMap>(&context.value);
    if (map == nullptr) return std::nullopt;
    const auto time = integerAt(*map, "accumulatedGPUTime");
    // The registry counts without a sign; a Property has kept the bits.
    times.push_back(time ? std::optional(static_cast<std::uint64_t>(*time)) : std::nullopt);
  }
  return times;
}

}  // namespace

GpuClient gpuClient(const Property& creator, const Property& usage) {
  GpuClient client;
  if (const auto* text = std::get_if<std::string>(&creator.value)) client.creator = *text;
  client.accumulatedTimes = accumulatedTimes(usage);
  return client;
}

}  // namespace embrix
