#include "hosts/replay/recording_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "base/base64.h"

namespace embrix {

namespace {

constexpr int kDeepestProperty = 32;

constexpr std::array<std::pair<std::string_view, double>, 3> kUnwritableNumbers{{
    {"nan", std::numeric_limits<double>::quiet_NaN()},
    {"inf", std::numeric_limits<double>::infinity()},
    {"-inf", -std::numeric_limits<double>::infinity()},
}};

// In the order of FileKind.
constexpr std::array<std::string_view, 4> kFileKinds = {"folder", "file", "link", "other"};

std::string decodedBase64(const Json& json) {
  const auto text = jsonText(json);
  const auto bytes = text ? bytesOfBase64(*text) : std::nullopt;
  if (!bytes) refuse("is no base64");
  return *bytes;
}

// A key of a property map must be a text in JSON, whatever its bytes.
constexpr std::string_view kCodedKey = "base64:";

std::string encodedKey(const std::string& key) {
  if (isUtf8(key) && !key.starts_with(kCodedKey)) return key;
  return std::string(kCodedKey) + base64(key);
}

std::string decodedKey(const std::string& key) {
  if (!key.starts_with(kCodedKey)) return key;
  const auto bytes = bytesOfBase64(std::string_view(key).substr(kCodedKey.size()));
  if (!bytes) refuse("has a key that is no base64");
  return *bytes;
}

OrderedJson encodedMap(const PropertyMap& map, int depth);
PropertyMap decodedMap(const Json& json, int depth);

struct PropertyEncoder {
  int depth;

  OrderedJson operator()(std::monostate) const { return nullptr; }
  OrderedJson operator()(bool truth) const { return truth; }
  OrderedJson operator()(std::int64_t number) const { return number; }
  OrderedJson operator()(double number) const {
    if (std::isfinite(number)) return number;
    return {{"number", encodeValue(number)}};
  }
  OrderedJson operator()(const std::string& text) const { return encodeValue(text); }
  OrderedJson operator()(const PropertyDate& date) const {
    return {{"date", encodeValue(date.seconds)}};
  }
  OrderedJson operator()(const PropertyList& list) const {
    OrderedJson json = OrderedJson::array();
    if (depth == kDeepestProperty) return json;
    for (const Property& item : list) {
      json.push_back(std::visit(PropertyEncoder{depth + 1}, item.value));
    }
    return json;
  }
  OrderedJson operator()(const PropertyMap& map) const {
    return {{"map", encodedMap(map, depth + 1)}};
  }
};

Property decodedProperty(const Json& json, int depth) {
  if (json.is_null()) return {};
  if (const auto truth = jsonBool(json)) return *truth;
  if (json.is_number_float()) return *jsonDouble(json);
  if (json.is_number()) {
    std::int64_t number = 0;
    decodeInteger(json, number);
    return number;
  }
  if (json.is_array()) {
    if (depth == kDeepestProperty && !json.empty()) refuse("is nested too deeply");
    PropertyList list;
    for (const Json& item : json) list.push_back(decodedProperty(item, depth + 1));
    return list;
  }
  double number = 0;
  if (const Json* date = jsonAt(json, "date")) {
    decodeValue(*date, number);
    return PropertyDate{number};
  }
  if (const Json* unwritable = jsonAt(json, "number")) {
    decodeValue(*unwritable, number);
    return number;
  }
  if (const Json* map = jsonAt(json, "map")) return decodedMap(*map, depth + 1);
  std::string text;
  decodeValue(json, text);
  return text;
}

OrderedJson encodedMap(const PropertyMap& map, int depth) {
  OrderedJson json = OrderedJson::object();
  if (depth > kDeepestProperty) return json;
  for (const auto& [key, property] : map) {
    json.emplace(encodedKey(key), std::visit(PropertyEncoder{depth}, property.value));
  }
  return json;
}

PropertyMap decodedMap(const Json& json, int depth) {
  if (!json.is_object()) refuse("is no object");
  if (depth > kDeepestProperty && !json.empty()) refuse("is nested too deeply");
  PropertyMap map;
  for (const auto& [key, value] : json.items()) {
    if (!map.emplace(decodedKey(key), decodedProperty(value, depth)).second) {
      refuse("has a key twice");
    }
  }
  return map;
}

}  // namespace

OrderedJson encodeValue(double number) {
  if (std::isfinite(number)) return number;
  if (std::isnan(number)) return "nan";
  return number > 0 ? "inf" : "-inf";
}

void decodeValue(const Json& json, double& number) {
  if (const auto read = jsonDouble(json)) {
    number = *read;
    return;
  }
  const auto text = jsonText(json);
  for (const auto& [name, value] : kUnwritableNumbers) {
    if (text != name) continue;
    number = value;
    return;
  }
  refuse("is no number");
}

void decodeValue(const Json& json, bool& truth) {
  const auto read = jsonBool(json);
  if (!read) refuse("is neither true nor false");
  truth = *read;
}

OrderedJson encodeValue(const std::string& text) {
  if (isUtf8(text)) return text;
  return {{"base64", base64(text)}};
}

void decodeValue(const Json& json, std::string& text) {
  if (const Json* coded = jsonAt(json, "base64")) {
    text = decodedBase64(*coded);
    return;
  }
  if (!json.is_string()) refuse("is no text");
  text = json.get_ref<const std::string&>();
}

OrderedJson encodeValue(ThermalState state) {
  return thermalStateName(state);
}

void decodeValue(const Json& json, ThermalState& state) {
  const auto name = jsonText(json);
  for (const auto known :
       {ThermalState::nominal, ThermalState::fair, ThermalState::serious, ThermalState::critical}) {
    if (name != thermalStateName(known)) continue;
    state = known;
    return;
  }
  refuse("is no thermal state");
}

OrderedJson encodeValue(FileKind kind) {
  return kFileKinds[static_cast<std::size_t>(kind)];
}

void decodeValue(const Json& json, FileKind& kind) {
  const auto name = jsonText(json);
  const auto known = std::find(kFileKinds.begin(), kFileKinds.end(), name);
  if (known == kFileKinds.end()) refuse("is no kind of file");
  kind = static_cast<FileKind>(known - kFileKinds.begin());
}

OrderedJson encodeValue(const RawUsage& usage) {
  OrderedJson list = {usage.userTime, usage.systemTime, usage.packageIdleWakeups,
                      usage.interruptWakeups, usage.footprint};
  if (usage.energyNJ) list.push_back(*usage.energyNJ);
  return list;
}

void decodeValue(const Json& json, RawUsage& usage) {
  std::array<std::uint64_t*, 5> fields = {&usage.userTime, &usage.systemTime,
                                          &usage.packageIdleWakeups, &usage.interruptWakeups,
                                          &usage.footprint};
  if (!json.is_array() || json.size() < fields.size()) refuse("is no list of five or six numbers");
  for (std::size_t i = 0; i < fields.size(); ++i) decodeInteger(json[i], *fields[i]);
  usage.energyNJ.reset();
  if (json.size() > fields.size()) decodeInteger(json[fields.size()], usage.energyNJ.emplace());
}

OrderedJson encodeValue(const SmcPacketBytes& packet) {
  std::string bytes(packet.begin(), packet.end());
  bytes.erase(bytes.find_last_not_of('\0') + 1);
  return base64(bytes);
}

void decodeValue(const Json& json, SmcPacketBytes& packet) {
  const std::string bytes = decodedBase64(json);
  if (bytes.size() > packet.size()) refuse(fmt::format("has more than {} bytes", packet.size()));
  packet.fill(0);
  std::copy(bytes.begin(), bytes.end(), packet.begin());
}

OrderedJson encodeValue(const PropertyMap& map) {
  return encodedMap(map, 0);
}

void decodeValue(const Json& json, PropertyMap& map) {
  map = decodedMap(json, 0);
}

}  // namespace embrix
