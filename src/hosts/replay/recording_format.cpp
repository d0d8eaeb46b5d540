#include "hosts/replay/recording_format.h"

#include <concepts>
#include <type_traits>
#include <utility>

#include "hosts/replay/recording_fields.h"
#include "hosts/replay/recording_values.h"

namespace embrix {

namespace {

template <typename T>
concept Whole = std::integral<T> && !std::same_as<T, bool>;

// Whether recording_values.h has the form of it.
template <typename T>
concept Value = std::same_as<T, bool> || std::same_as<T, double> || std::same_as<T, std::string> ||
    std::same_as<T, ThermalState> || std::same_as<T, FileKind> || std::same_as<T, RawUsage> ||
    std::same_as<T, SmcPacketBytes> || std::same_as<T, PropertyMap>;

// Codec<T> turns a T into JSON and back: by value, list, keyed answers, or record.
template <typename T>
struct Codec;

// A key whose field is left out when absent or empty, and so can be missing.
template <typename T>
constexpr bool kCanBeMissing = false;
template <typename T>
constexpr bool kCanBeMissing<std::optional<T>> = true;
template <typename T>
constexpr bool kCanBeMissing<std::vector<T>> = true;
template <typename K, typename V>
constexpr bool kCanBeMissing<std::map<K, V>> = true;

template <typename T>
bool isMissing(const std::optional<T>& value) {
  return !value;
}
template <typename T>
bool isMissing(const T& list) {
  return list.empty();
}

struct Encoder {
  OrderedJson& object;

  template <typename T>
  void operator()(const char* key, const T& field) {
    if constexpr (kCanBeMissing<T>) {
      if (isMissing(field)) return;
    }
    object[key] = Codec<T>::encode(field);
  }
  void operator()(const char* key, std::int32_t field, std::int32_t, std::int32_t) {
    object[key] = field;
  }
};

struct Decoder {
  const Json& object;

  template <typename T>
  void operator()(const char* key, T& field) {
    const Json* json = jsonAt(object, key);
    inside(key, [&] {
      if (json != nullptr) {
        Codec<T>::decode(*json, field);
      } else if (!kCanBeMissing<T>) {
        refuse("is missing");
      }
    });
  }
  void operator()(const char* key, std::int32_t& field, std::int32_t least, std::int32_t most) {
    const Json* json = jsonAt(object, key);
    inside(key, [&] {
      if (json == nullptr) refuse("is missing");
      decodeInteger(*json, field, least, most);
    });
  }
};

template <typename T>
struct Codec {  // a record
  static OrderedJson encode(const T& record) {
    OrderedJson json = OrderedJson::object();
    Encoder encoder{json};
    fields(record, encoder);
    return json;
  }
  static void decode(const Json& json, T& record) {
    if (!json.is_object()) refuse("is no object");
    Decoder decoder{json};
    fields(record, decoder);
  }
};

template <Whole T>
struct Codec<T> {
  static OrderedJson encode(T number) { return number; }
  static void decode(const Json& json, T& number) { decodeInteger(json, number); }
};

template <Value T>
struct Codec<T> {
  static OrderedJson encode(const T& value) {
    if constexpr (std::same_as<T, bool>) {
      return value;
    } else {
      return encodeValue(value);
    }
  }
  static void decode(const Json& json, T& value) { decodeValue(json, value); }
};

template <typename T>
struct Codec<std::optional<T>> {
  static OrderedJson encode(const std::optional<T>& value) {
    return value ? Codec<T>::encode(*value) : OrderedJson();
  }
  static void decode(const Json& json, std::optional<T>& value) {
    if (json.is_null()) return;
    T held{};
    Codec<T>::decode(json, held);
    value = std::move(held);
  }
};

template <typename T>
struct Codec<std::vector<T>> {
  static OrderedJson encode(const std::vector<T>& list) {
    OrderedJson json = OrderedJson::array();
    for (const auto& item : list) json.push_back(Codec<T>::encode(item));
    return json;
  }
  static void decode(const Json& json, std::vector<T>& list) {
    if (!json.is_array()) refuse("is no list");
    for (std::size_t i = 0; i < json.size(); ++i) {
      inside(fmt::format("[{}]", i), [&] {
        T item{};
        Codec<T>::decode(json[i], item);
        list.push_back(std::move(item));
      });
    }
  }
};

// One answer of a keyed question, as a line holds it.
template <typename K, typename V>
struct Answered {
  K of{};
  V answer{};
};

template <typename K, typename V>
void fields(const Answered<K, V>& answered, auto& visit) {
  visit("of", answered.of);
  visit("answer", answered.answer);
}

template <typename K, typename V>
void fields(Answered<K, V>& answered, auto& visit) {
  visit("of", answered.of);
  visit("answer", answered.answer);
}

template <typename K, typename V>
struct Codec<std::map<K, V>> {
  static OrderedJson encode(const std::map<K, V>& answers) {
    OrderedJson json = OrderedJson::array();
    for (const auto& [of, answer] : answers) {
      json.push_back(Codec<Answered<K, V>>::encode({of, answer}));
    }
    return json;
  }
  static void decode(const Json& json, std::map<K, V>& answers) {
    std::vector<Answered<K, V>> list;
    Codec<std::vector<Answered<K, V>>>::decode(json, list);
    for (auto& each : list) {
      if (!answers.emplace(std::move(each.of), std::move(each.answer)).second) {
        refuse("tells of the same thing twice");
      }
    }
  }
};

template <typename Record, typename Check>
std::variant<Record, RecordingProblem> decoded(std::string_view line, Check check) {
  const auto json = parseJson(line);
  if (!json) return RecordingProblem{"is no JSON"};
  try {
    check(*json);
    Record record;
    Codec<Record>::decode(*json, record);
    return record;
  } catch (const RecordingDamage& damage) {
    if (damage.where.empty()) return RecordingProblem{damage.what};
    return RecordingProblem{fmt::format("{} {}", damage.where, damage.what)};
  }
}

// A newer version can mean other things by the same keys, so it is looked at first.
void checkKind(const Json& json) {
  const Json* kind = jsonAt(json, "embrix");
  if (kind == nullptr || jsonText(*kind) != "recording") refuse("is not the start of a recording");
  const Json* version = jsonAt(json, "version");
  if (version == nullptr) refuse("version is missing");
  const auto number = jsonInteger<std::int32_t>(*version);
  if (!number || *number < 1) refuse("version is no whole number from 1");
  if (*number > kRecordingVersion) {
    refuse(fmt::format("version {} is newer than this program, which reads version {}", *number,
                       kRecordingVersion));
  }
}

}  // namespace

std::string encodeHeader(const RecordingHeader& header) {
  OrderedJson json = {{"embrix", "recording"}, {"version", kRecordingVersion}};
  Encoder encoder{json};
  fields(header, encoder);
  return dumpJson(json);
}

std::string encodeTick(const RecordedTick& tick) {
  return dumpJson(Codec<RecordedTick>::encode(tick));
}

std::variant<RecordingHeader, RecordingProblem> decodeHeader(std::string_view line) {
  return decoded<RecordingHeader>(line, checkKind);
}

std::variant<RecordedTick, RecordingProblem> decodeTick(std::string_view line) {
  return decoded<RecordedTick>(line, [](const Json& json) {
    const Json* tables = jsonAt(json, "processes");
    if (tables != nullptr && tables->size() > kMostTablesInTick) {
      refuse(fmt::format("processes has more than {} tables", kMostTablesInTick));
    }
  });
}

bool isJsonLine(std::string_view line) {
  return parseJson(line).has_value();
}

}  // namespace embrix
