// A value of a platform's property list, as registries and power services hand them out.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace embrix {

struct Property;
using PropertyList = std::vector<Property>;
using PropertyMap = std::map<std::string, Property, std::less<>>;

// A moment of the wall clock inside a property list.
struct PropertyDate {
  double seconds = 0;  // since 1970
  bool operator==(const PropertyDate&) const = default;
};

struct Property {
  // Integers are signed 64-bit. A platform number above that range arrives with its bits kept, so a
  // negative number that was printed as unsigned is negative again.
  using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string, PropertyDate,
                             PropertyList, PropertyMap>;
  Value value;

  Property() = default;
  template <typename T>
  requires(!std::is_same_v<std::decay_t<T>, Property> && std::is_constructible_v<Value, T>)
      Property(T&& held)  // NOLINT(bugprone-forwarding-reference-overload): constrained above
      : value(std::forward<T>(held)) {}
  Property(int held) : value(std::int64_t{held}) {}
  Property(const char* held) : value(std::string(held)) {}

  bool operator==(const Property&) const = default;
};

// Each looks a key up and answers with its value, or absent when the key is missing or its value is
// of another type. An integer is read from a whole or a fractional number, the fraction cut off; a
// fractional number outside the range of 64 bits is absent.
const Property* propertyAt(const PropertyMap& map, std::string_view key);
std::optional<std::int64_t> integerAt(const PropertyMap& map, std::string_view key);
std::optional<bool> booleanAt(const PropertyMap& map, std::string_view key);
std::optional<std::string> textAt(const PropertyMap& map, std::string_view key);
std::optional<double> dateAt(const PropertyMap& map, std::string_view key);  // seconds since 1970
const PropertyMap* mapAt(const PropertyMap& map, std::string_view key);
const PropertyList* listAt(const PropertyMap& map, std::string_view key);

}  // namespace embrix
