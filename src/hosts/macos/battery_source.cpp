#include "hosts/macos/battery_source.h"

#include <IOKit/ps/IOPowerSources.h>

#include "hosts/macos/autorelease_pool.h"
#include "hosts/macos/cf_holder.h"
#include "hosts/macos/cf_property.h"
#include "hosts/macos/io_registry.h"

namespace embrix {

MacBatterySource::MacBatterySource() : service_(firstService("AppleSmartBattery")) {}

std::optional<PropertyMap> MacBatterySource::registry() {
  if (!service_) return std::nullopt;
  const AutoreleasePool pool;
  return propertiesOf(service_.get());
}

std::vector<PropertyMap> MacBatterySource::powerSources() {
  const AutoreleasePool pool;
  const CfHolder<CFTypeRef> state(IOPSCopyPowerSourcesInfo());
  if (!state) return {};
  const CfHolder<CFArrayRef> sources(IOPSCopyPowerSourcesList(state.get()));
  if (!sources) return {};
  std::vector<PropertyMap> descriptions;
  for (CFIndex i = 0; i < CFArrayGetCount(sources.get()); ++i) {
    const CFTypeRef source = CFArrayGetValueAtIndex(sources.get(), i);
    descriptions.push_back(propertyMapOf(IOPSGetPowerSourceDescription(state.get(), source)));
  }
  return descriptions;
}

}  // namespace embrix
