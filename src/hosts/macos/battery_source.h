// The battery's service in the I/O registry, and the power sources as the system describes them.
// Sampling thread only.
#pragma once

#include <optional>
#include <vector>

#include "host/battery_source.h"
#include "hosts/macos/io_holder.h"

namespace embrix {

class MacBatterySource final : public BatterySource {
 public:
  MacBatterySource();

  bool hasService() override { return static_cast<bool>(service_); }
  std::optional<PropertyMap> registry() override;
  std::vector<PropertyMap> powerSources() override;

 private:
  IoHolder service_;
};

}  // namespace embrix
