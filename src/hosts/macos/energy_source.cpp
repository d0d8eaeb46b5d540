#include "hosts/macos/energy_source.h"

#include <Kernel/IOKit/IOReportTypes.h>

#include <cstddef>
#include <utility>
#include <vector>

#include "darwin/energy_report.h"
#include "darwin/report_element.h"
#include "hosts/macos/autorelease_pool.h"
#include "hosts/macos/cf_property.h"
#include "hosts/macos/clock.h"

namespace embrix {

namespace {

static_assert(sizeof(IOReportElement) == report_element_layout::kSize);
static_assert(offsetof(IOReportElement, timestamp) == report_element_layout::kTimestampOffset);
static_assert(offsetof(IOReportElement, values) == report_element_layout::kValueOffset);
static_assert(kIOReportInvalidIntValue < 0);  // a channel without a value is left out as negative

// The channels of a sample or a difference; null when it has none.
CFArrayRef channelsOf(CFDictionaryRef sample) {
  return sample == nullptr ? nullptr
                           : asArray(CFDictionaryGetValue(sample, CFSTR("IOReportChannels")));
}

// The time stamp of a sample's channel. Nothing promises that the raw data is there, nor that the
// samples list their channels in one order: it is, and they do, and where not the stamp is absent.
std::optional<std::uint64_t> stampAt(CFArrayRef channels, CFIndex index, CFIndex count) {
  if (channels == nullptr || CFArrayGetCount(channels) != count) return std::nullopt;
  const CFDictionaryRef channel = asDictionary(CFArrayGetValueAtIndex(channels, index));
  if (channel == nullptr) return std::nullopt;
  const CFDataRef raw = asData(CFDictionaryGetValue(channel, CFSTR("RawElements")));
  if (raw == nullptr) return std::nullopt;
  return reportTimestamp({CFDataGetBytePtr(raw), static_cast<std::size_t>(CFDataGetLength(raw))});
}

}  // namespace

MacEnergySource::MacEnergySource()
    : library_("/usr/lib/libIOReport.dylib"),
      createSamples_(library_.function<CreateSamples>("IOReportCreateSamples")),
      createDelta_(library_.function<CreateDelta>("IOReportCreateSamplesDelta")),
      channelName_(library_.function<GetText>("IOReportChannelGetChannelName")),
      unitLabel_(library_.function<GetText>("IOReportChannelGetUnitLabel")),
      integerValue_(library_.function<GetInteger>("IOReportSimpleGetIntegerValue")),
      secondsPerTick_(machineTimeUnitNS() / 1e9) {
  auto* const copyChannels = library_.function<CopyChannelsInGroup>("IOReportCopyChannelsInGroup");
  auto* const createSubscription =
      library_.function<CreateSubscription>("IOReportCreateSubscription");
  if (createSamples_ == nullptr || createDelta_ == nullptr || channelName_ == nullptr ||
      unitLabel_ == nullptr || integerValue_ == nullptr || copyChannels == nullptr ||
      createSubscription == nullptr) {
    return;
  }
  subscribe(*copyChannels, *createSubscription);
}

void MacEnergySource::subscribe(CopyChannelsInGroup& copyChannels,
                                CreateSubscription& createSubscription) {
  const CfHolder<CFDictionaryRef> channels(copyChannels(CFSTR("Energy Model"), nullptr, 0, 0, 0));
  if (!channels) return;
  const CfHolder<CFMutableDictionaryRef> wanted(
      CFDictionaryCreateMutableCopy(kCFAllocatorDefault, 0, channels.get()));
  if (!wanted) return;
  CfHolder<CFTypeRef> subscription(
      createSubscription(nullptr, wanted.get(), subscribed_.out(), 0, nullptr));
  if (subscribed_) subscription_ = std::move(subscription);
}

bool MacEnergySource::sample() {
  if (!subscription_) return false;
  const AutoreleasePool pool;
  CfHolder<CFDictionaryRef> newest(createSamples_(subscription_.get(), subscribed_.get(), nullptr));
  if (!newest) return false;
  earlier_ = std::exchange(later_, std::move(newest));
  return true;
}

std::optional<EnergyInterval> MacEnergySource::interval() {
  if (!earlier_ || !later_) return std::nullopt;
  const AutoreleasePool pool;
  const CfHolder<CFDictionaryRef> delta(createDelta_(earlier_.get(), later_.get(), nullptr));
  const CFArrayRef channels = channelsOf(asDictionary(delta.get()));
  if (channels == nullptr) return std::nullopt;
  const CFArrayRef before = channelsOf(earlier_.get());
  const CFArrayRef after = channelsOf(later_.get());

  std::vector<StampedChannel> stamped;
  const CFIndex count = CFArrayGetCount(channels);
  for (CFIndex i = 0; i < count; ++i) {
    const CFDictionaryRef channel = asDictionary(CFArrayGetValueAtIndex(channels, i));
    if (channel == nullptr) continue;
    auto name = textOf(channelName_(channel));
    auto unit = textOf(unitLabel_(channel));
    if (!name || !unit) continue;
    stamped.push_back({.channel = {std::move(*name), std::move(*unit), integerValue_(channel, 0)},
                       .before = stampAt(before, i, count),
                       .after = stampAt(after, i, count)});
  }
  return energyInterval(stamped, secondsPerTick_);
}

}  // namespace embrix
