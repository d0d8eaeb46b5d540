#include "host/property.h"

#include <cmath>

namespace embrix {

namespace {

template <typename T>
const T* valueAt(const PropertyMap& map, std::string_view key) {
  const Property* property = propertyAt(map, key);
  return property == nullptr ? nullptr : std::get_if<T>(&property->value);
}

template <typename T>
std::optional<T> copyAt(const PropertyMap& map, std::string_view key) {
  const T* value = valueAt<T>(map, key);
  return value == nullptr ? std::nullopt : std::optional<T>(*value);
}

}  // namespace

const Property* propertyAt(const PropertyMap& map, std::string_view key) {
  const auto entry = map.find(key);
  return entry == map.end() ? nullptr : &entry->second;
}

std::optional<std::int64_t> integerAt(const PropertyMap& map, std::string_view key) {
  if (const auto* whole = valueAt<std::int64_t>(map, key)) return *whole;
  const auto* fractional = valueAt<double>(map, key);
  // 2^63 itself is the first double that does not fit.
  constexpr double kLimit = 9223372036854775808.0;
  if (fractional == nullptr || !(std::abs(*fractional) < kLimit)) return std::nullopt;
  return static_cast<std::int64_t>(*fractional);
}

std::optional<bool> booleanAt(const PropertyMap& map, std::string_view key) {
  return copyAt<bool>(map, key);
}

std::optional<std::string> textAt(const PropertyMap& map, std::string_view key) {
  return copyAt<std::string>(map, key);
}

std::optional<double> dateAt(const PropertyMap& map, std::string_view key) {
  const auto* date = valueAt<PropertyDate>(map, key);
  return date == nullptr ? std::nullopt : std::optional<double>(date->seconds);
}

const PropertyMap* mapAt(const PropertyMap& map, std::string_view key) {
  return valueAt<PropertyMap>(map, key);
}

const PropertyList* listAt(const PropertyMap& map, std::string_view key) {
  return valueAt<PropertyList>(map, key);
}

}  // namespace embrix
