// The chip's energy counters, by a private library. One subscription for the life of the process.
// Sampling thread only.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

#include "host/energy_source.h"
#include "hosts/macos/cf_holder.h"
#include "hosts/macos/private_library.h"

namespace embrix {

class MacEnergySource final : public EnergySource {
 public:
  // Without the library, one of its functions or the counters it answers nothing, for good.
  MacEnergySource();

  bool sample() override;
  std::optional<EnergyInterval> interval() override;

 private:
  using CopyChannelsInGroup = CFDictionaryRef(CFStringRef group, CFStringRef subgroup,
                                              std::uint64_t, std::uint64_t, std::uint64_t);
  using CreateSubscription = CFTypeRef(void*, CFMutableDictionaryRef channels,
                                       CFMutableDictionaryRef* subscribed, std::uint64_t,
                                       CFTypeRef);
  using CreateSamples = CFDictionaryRef(CFTypeRef subscription, CFMutableDictionaryRef subscribed,
                                        CFTypeRef);
  using CreateDelta = CFDictionaryRef(CFDictionaryRef earlier, CFDictionaryRef later, CFTypeRef);
  using GetText = CFStringRef(CFDictionaryRef channel);
  using GetInteger = std::int64_t(CFDictionaryRef channel, std::int32_t index);

  void subscribe(CopyChannelsInGroup& copyChannels, CreateSubscription& createSubscription);

  PrivateLibrary library_;
  CreateSamples* createSamples_;
  CreateDelta* createDelta_;
  GetText* channelName_;
  GetText* unitLabel_;
  GetInteger* integerValue_;
  double secondsPerTick_;
  CfHolder<CFTypeRef> subscription_;             // none while idle
  CfHolder<CFMutableDictionaryRef> subscribed_;  // the channels that samples are taken of
  CfHolder<CFDictionaryRef> earlier_;
  CfHolder<CFDictionaryRef> later_;
};

}  // namespace embrix
