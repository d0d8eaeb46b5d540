// A simulator's device file with any bytes in it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "sampling/simulator_devices.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const auto device =
      SimulatorDevices::device("udid", "/home/me", [&](const std::string&) { return bytes; });
  if (!device) return 0;
  if (Text::repaired(device->name) != device->name) std::abort();
  if (device->runtime) SimulatorFinder::runtimeName(*device->runtime);
  return 0;
}
