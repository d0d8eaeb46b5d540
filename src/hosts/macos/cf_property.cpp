#include "hosts/macos/cf_property.h"

#include <vector>

#include "hosts/macos/cf_holder.h"

namespace embrix {

namespace {

constexpr int kDepthLimit = 64;
constexpr UInt8 kUnconvertible = '?';

Property propertyAtDepth(CFTypeRef object, int depth);

std::string utf8(CFStringRef text) {
  const CFRange all = CFRangeMake(0, CFStringGetLength(text));
  CFIndex size = 0;
  CFStringGetBytes(text, all, kCFStringEncodingUTF8, kUnconvertible, false, nullptr, 0, &size);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  CFStringGetBytes(text, all, kCFStringEncodingUTF8, kUnconvertible, false,
                   reinterpret_cast<UInt8*>(bytes.data()), size, &size);
  return bytes;
}

Property numberOf(CFNumberRef number) {
  if (CFNumberIsFloatType(number)) {
    double value = 0;
    CFNumberGetValue(number, kCFNumberDoubleType, &value);
    return value;
  }
  std::int64_t value = 0;
  CFNumberGetValue(number, kCFNumberSInt64Type, &value);
  return value;
}

PropertyMap mapOf(CFDictionaryRef dictionary, int depth) {
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
  PropertyMap map;
  for (std::size_t i = 0; i < count; ++i) {
    const auto key = textOf(keys[i]);
    if (key) map.insert_or_assign(*key, propertyAtDepth(values[i], depth + 1));
  }
  return map;
}

PropertyList listOf(CFArrayRef array, int depth) {
  PropertyList list;
  const CFIndex count = CFArrayGetCount(array);
  list.reserve(static_cast<std::size_t>(count));
  for (CFIndex i = 0; i < count; ++i) {
    list.push_back(propertyAtDepth(CFArrayGetValueAtIndex(array, i), depth + 1));
  }
  return list;
}

Property propertyAtDepth(CFTypeRef object, int depth) {
  if (object == nullptr || depth > kDepthLimit) return {};
  if (const CFStringRef text = asString(object)) return utf8(text);
  if (const CFNumberRef number = asNumber(object)) return numberOf(number);
  if (const CFDictionaryRef dictionary = asDictionary(object)) return mapOf(dictionary, depth);
  if (const CFArrayRef array = asArray(object)) return listOf(array, depth);
  if (CFGetTypeID(object) == CFBooleanGetTypeID()) {
    return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0;
  }
  if (CFGetTypeID(object) == CFDateGetTypeID()) {
    return PropertyDate{CFDateGetAbsoluteTime(static_cast<CFDateRef>(object)) +
                        kCFAbsoluteTimeIntervalSince1970};
  }
  return {};
}

}  // namespace

Property propertyOf(CFTypeRef object) {
  return propertyAtDepth(object, 0);
}

PropertyMap propertyMapOf(CFTypeRef object) {
  const CFDictionaryRef dictionary = asDictionary(object);
  return dictionary == nullptr ? PropertyMap() : mapOf(dictionary, 0);
}

std::optional<std::string> textOf(CFTypeRef object) {
  const CFStringRef text = asString(object);
  return text == nullptr ? std::nullopt : std::optional(utf8(text));
}

std::optional<std::int64_t> integerOf(CFTypeRef object) {
  const CFNumberRef number = asNumber(object);
  if (number == nullptr) return std::nullopt;
  std::int64_t value = 0;
  CFNumberGetValue(number, kCFNumberSInt64Type, &value);
  return value;
}

}  // namespace embrix
