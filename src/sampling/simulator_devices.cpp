#include "sampling/simulator_devices.h"

#include "base/text.h"
#include "darwin/property_list.h"
#include "host/property.h"

namespace embrix {

std::optional<SimulatorFinder::Device> SimulatorDevices::device(const std::string& udid,
                                                                const std::string& home,
                                                                const FileReader& readFile) {
  const auto bytes =
      readFile(home + "/Library/Developer/CoreSimulator/Devices/" + udid + "/device.plist");
  if (!bytes) return std::nullopt;
  const auto list = decodePropertyList(*bytes);
  const auto* facts = list ? std::get_if<PropertyMap>(&list->value) : nullptr;
  if (facts == nullptr) return std::nullopt;
  const auto name = textAt(*facts, "name");
  if (!name) return std::nullopt;
  SimulatorFinder::Device device{.name = Text::repaired(*name), .runtime = std::nullopt};
  if (const auto runtime = textAt(*facts, "runtime")) device.runtime = Text::repaired(*runtime);
  return device;
}

void SimulatorDevices::shutDown(const std::string& udid, CommandRunner& commands) {
  commands.start("/usr/bin/xcrun", {"simctl", "shutdown", udid});
}

}  // namespace embrix
