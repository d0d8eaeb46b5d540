// Owns one reference to a Core Foundation object, taken over from a function with "Create" or
// "Copy" in its name, and releases it once. Never made from what a "Get" function answers: that
// belongs to somebody else.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace embrix {

template <typename Ref>
class CfHolder {
 public:
  CfHolder() noexcept = default;
  explicit CfHolder(Ref owned) noexcept : owned_(owned) {}
  CfHolder(CfHolder&& other) noexcept : owned_(std::exchange(other.owned_, nullptr)) {}
  CfHolder& operator=(CfHolder&& other) noexcept {
    std::swap(owned_, other.owned_);
    return *this;
  }
  CfHolder(const CfHolder&) = delete;
  CfHolder& operator=(const CfHolder&) = delete;
  ~CfHolder() {
    if (owned_ != nullptr) CFRelease(owned_);
  }

  Ref get() const noexcept { return owned_; }
  explicit operator bool() const noexcept { return owned_ != nullptr; }

  // Where a function writes the reference that it hands over. Only for an empty holder.
  Ref* out() noexcept { return &owned_; }

 private:
  Ref owned_ = nullptr;
};

// Null when the object is of another type, or null itself. Owns nothing.
inline CFDictionaryRef asDictionary(CFTypeRef object) {
  return object != nullptr && CFGetTypeID(object) == CFDictionaryGetTypeID()
             ? static_cast<CFDictionaryRef>(object)
             : nullptr;
}
inline CFArrayRef asArray(CFTypeRef object) {
  return object != nullptr && CFGetTypeID(object) == CFArrayGetTypeID()
             ? static_cast<CFArrayRef>(object)
             : nullptr;
}
inline CFStringRef asString(CFTypeRef object) {
  return object != nullptr && CFGetTypeID(object) == CFStringGetTypeID()
             ? static_cast<CFStringRef>(object)
             : nullptr;
}
inline CFNumberRef asNumber(CFTypeRef object) {
  return object != nullptr && CFGetTypeID(object) == CFNumberGetTypeID()
             ? static_cast<CFNumberRef>(object)
             : nullptr;
}
inline CFDataRef asData(CFTypeRef object) {
  return object != nullptr && CFGetTypeID(object) == CFDataGetTypeID()
             ? static_cast<CFDataRef>(object)
             : nullptr;
}

}  // namespace embrix
