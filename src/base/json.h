// JSON as the program reads and writes it: texts parsed without exceptions, values read without
// surprises, texts written from any bytes. Numbers keep their kind: whole numbers of 64 bits are
// exact, and a double comes back from its text as the same double.
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

namespace embrix {

using Json = nlohmann::json;                 // keys of an object in byte order
using OrderedJson = nlohmann::ordered_json;  // keys of an object as they were put in

// Arrays and objects inside one another, at most. What is deeper is no use to anyone, and
// dangerous: a few megabytes of brackets would take gigabytes, and copies and comparisons recurse.
inline constexpr int kDeepestJson = 256;

// Absent when the text is anything but one JSON value in UTF-8 with white space around it, or is
// nested too deeply. Of a key that an object names twice, the last value stands.
std::optional<Json> parseJson(std::string_view text);

// One line without its end. A byte that is not UTF-8 becomes U+FFFD; a number that is not finite
// becomes null.
std::string dumpJson(const Json& value);
std::string dumpJson(const OrderedJson& value);

bool isUtf8(std::string_view bytes);

// The value of that key; null when `object` is no object or has no such key.
const Json* jsonAt(const Json& object, std::string_view key);

// Each is absent when the value is of another type. A double is read from a whole number too; a
// whole number outside the range of the type is absent, and so is any number with a fraction part
// or an exponent.
std::optional<bool> jsonBool(const Json& value);
std::optional<double> jsonDouble(const Json& value);
std::optional<std::string> jsonText(const Json& value);

template <std::integral Number>
requires(!std::same_as<Number, bool>) std::optional<Number> jsonInteger(const Json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (std::in_range<Number>(number)) return static_cast<Number>(number);
  } else if (value.is_number_integer()) {
    const auto number = value.get<std::int64_t>();
    if (std::in_range<Number>(number)) return static_cast<Number>(number);
  }
  return std::nullopt;
}

}  // namespace embrix
