#include "hosts/macos/temperature_source.h"

#include "hosts/macos/autorelease_pool.h"
#include "hosts/macos/cf_property.h"

namespace embrix {

namespace {

// Temperature sensors among all that the event system serves: the vendor's usage page, and on it
// the usage of such sensors.
constexpr std::int32_t kVendorUsagePage = 0xff00;
constexpr std::int32_t kTemperatureUsage = 5;

constexpr std::int64_t kTemperatureEvent = 15;
// A field is its event's type in the upper half and its own number, here 0, in the lower.
constexpr std::int32_t kTemperatureField = 15 << 16;

CfHolder<CFDictionaryRef> temperatureSensors() {
  const CfHolder<CFNumberRef> page(
      CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &kVendorUsagePage));
  const CfHolder<CFNumberRef> usage(
      CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &kTemperatureUsage));
  const void* keys[] = {CFSTR("PrimaryUsagePage"), CFSTR("PrimaryUsage")};
  const void* values[] = {page.get(), usage.get()};
  return CfHolder(CFDictionaryCreate(kCFAllocatorDefault, keys, values, 2,
                                     &kCFTypeDictionaryKeyCallBacks,
                                     &kCFTypeDictionaryValueCallBacks));
}

}  // namespace

MacTemperatureSource::MacTemperatureSource()
    : library_("/System/Library/Frameworks/IOKit.framework/IOKit"),
      copyEvent_(library_.function<CopyEvent>("IOHIDServiceClientCopyEvent")),
      getFloat_(library_.function<GetFloat>("IOHIDEventGetFloatValue")) {
  auto* const createClient = library_.function<CreateClient>("IOHIDEventSystemClientCreate");
  auto* const setMatching = library_.function<SetMatching>("IOHIDEventSystemClientSetMatching");
  auto* const copyServices = library_.function<CopyServices>("IOHIDEventSystemClientCopyServices");
  auto* const copyProperty = library_.function<CopyProperty>("IOHIDServiceClientCopyProperty");
  if (copyEvent_ == nullptr || getFloat_ == nullptr || createClient == nullptr ||
      setMatching == nullptr || copyServices == nullptr || copyProperty == nullptr) {
    return;
  }
  client_ = CfHolder<CFTypeRef>(createClient(kCFAllocatorDefault));
  if (!client_) return;
  setMatching(client_.get(), temperatureSensors().get());
  services_ = CfHolder<CFArrayRef>(copyServices(client_.get()));
  if (!services_) return;
  for (CFIndex i = 0; i < CFArrayGetCount(services_.get()); ++i) {
    const CfHolder<CFTypeRef> name(
        copyProperty(CFArrayGetValueAtIndex(services_.get(), i), CFSTR("Product")));
    names_.push_back(textOf(name.get()).value_or(""));
  }
}

std::optional<double> MacTemperatureSource::read(std::size_t index) {
  if (index >= names_.size()) return std::nullopt;
  const AutoreleasePool pool;
  const CFTypeRef service = CFArrayGetValueAtIndex(services_.get(), static_cast<CFIndex>(index));
  const CfHolder<CFTypeRef> event(copyEvent_(service, kTemperatureEvent, 0, 0));
  if (!event) return std::nullopt;
  return getFloat_(event.get(), kTemperatureField);
}

}  // namespace embrix
