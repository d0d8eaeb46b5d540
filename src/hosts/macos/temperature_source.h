// Temperature sensors of the human-interface event system, by private functions. Sampling thread
// only.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

#include "host/temperature_source.h"
#include "hosts/macos/cf_holder.h"
#include "hosts/macos/private_library.h"

namespace embrix {

class MacTemperatureSource final : public TemperatureSource {
 public:
  // Lists the sensors once. There are none when a function is missing.
  MacTemperatureSource();

  std::vector<std::string> sensors() override { return names_; }
  std::optional<double> read(std::size_t index) override;

 private:
  using CreateClient = CFTypeRef(CFAllocatorRef);
  using SetMatching = int(CFTypeRef client, CFDictionaryRef matching);
  using CopyServices = CFArrayRef(CFTypeRef client);
  using CopyProperty = CFTypeRef(CFTypeRef service, CFStringRef key);
  using CopyEvent = CFTypeRef(CFTypeRef service, std::int64_t type, std::int32_t options,
                              std::int64_t timestamp);
  using GetFloat = double(CFTypeRef event, std::int32_t field);

  PrivateLibrary library_;
  CopyEvent* copyEvent_;
  GetFloat* getFloat_;
  CfHolder<CFTypeRef> client_;  // the services live as long as it does
  CfHolder<CFArrayRef> services_;
  std::vector<std::string> names_;  // of each service
};

}  // namespace embrix
