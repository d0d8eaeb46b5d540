#include "base/json.h"

#include "base/text.h"

namespace embrix {

namespace {

template <typename AnyJson>
std::string dumped(const AnyJson& value) {
  constexpr int kOneLine = -1;
  return value.dump(kOneLine, ' ', false, AnyJson::error_handler_t::replace);
}

// Right for JSON; for another text any answer will do.
bool isTooDeep(std::string_view text) {
  int depth = 0;
  bool isInString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char letter = text[i];
    if (letter == '"') {
      isInString = !isInString;
    } else if (isInString) {
      if (letter == '\\') ++i;
    } else if (letter == '[' || letter == '{') {
      if (++depth > kDeepestJson) return true;
    } else if (letter == ']' || letter == '}') {
      --depth;
    }
  }
  return false;
}

}  // namespace

std::optional<Json> parseJson(std::string_view text) {
  if (isTooDeep(text)) return std::nullopt;
  constexpr bool kThrow = false;
  Json value = Json::parse(text.begin(), text.end(), nullptr, kThrow);
  if (value.is_discarded()) return std::nullopt;
  return value;
}

std::string dumpJson(const Json& value) {
  return dumped(value);
}

std::string dumpJson(const OrderedJson& value) {
  return dumped(value);
}

bool isUtf8(std::string_view bytes) {
  return Text::repaired(bytes) == bytes;
}

const Json* jsonAt(const Json& object, std::string_view key) {
  if (!object.is_object()) return nullptr;
  const auto entry = object.find(key);
  return entry == object.end() ? nullptr : &*entry;
}

std::optional<bool> jsonBool(const Json& value) {
  if (!value.is_boolean()) return std::nullopt;
  return value.get<bool>();
}

std::optional<double> jsonDouble(const Json& value) {
  if (!value.is_number()) return std::nullopt;
  return value.get<double>();
}

std::optional<std::string> jsonText(const Json& value) {
  if (!value.is_string()) return std::nullopt;
  return value.get<std::string>();
}

}  // namespace embrix
