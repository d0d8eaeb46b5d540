// What the simulator tool prints, with any bytes in it.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/json.h"
#include "cleanup/cleanup_catalog.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto simulators = CleanupCatalog::unavailableSimulators(bytes);
  const bool isSorted =
      std::is_sorted(simulators.begin(), simulators.end(),
                     [](const auto& a, const auto& b) { return a.udid < b.udid; });
  if (!isSorted) std::abort();
  for (const auto& simulator : simulators) {
    if (!isUtf8(simulator.udid) || !isUtf8(simulator.name)) std::abort();
    if (simulator.runtime.empty()) std::abort();
    // What passes for a device can only name a folder directly below the devices.
    if (CleanupCatalog::isDeviceIdentifier(simulator.udid) &&
        simulator.udid.find('/') != std::string::npos) {
      std::abort();
    }
  }
  return 0;
}
