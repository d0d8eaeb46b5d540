#include "records/record_decoding.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include <simdjson.h>

#include "base/hash_map.h"

namespace embrix {

namespace {

using simdjson::dom::element;
using simdjson::dom::object;

// One text for all equal keys: a group stands in thousands of points.
class SharedKeys {
 public:
  SharedText shared(std::string_view text) {
    const auto found = texts_.find(text);
    return found != texts_.end() ? *found : *texts_.insert(SharedText(text)).first;
  }

 private:
  HashSet<SharedText> texts_;
};

bool read(const element& value, DischargeSession::SleepMark& mark);

bool read(const element& value, double& number) {
  return value.get_double().get(number) == simdjson::SUCCESS;
}

bool read(const element& value, std::int64_t& number) {
  return value.get_int64().get(number) == simdjson::SUCCESS;
}

bool read(const element& value, int& number) {
  std::int64_t wide = 0;
  if (!read(value, wide) || !std::in_range<int>(wide)) return false;
  number = static_cast<int>(wide);
  return true;
}

// The largest sample, in the digits that it is written in, is a double a little above it.
bool read(const element& value, float& number) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  constexpr double kRoundsToInfinity = 0x1.ffffffp127;
  double wide = 0;
  if (!read(value, wide) || std::abs(wide) >= kRoundsToInfinity) return false;
  number = static_cast<float>(std::clamp(wide, -kLargest, kLargest));
  return true;
}

template <typename Text>
requires(std::same_as<Text, std::string> ||
         std::same_as<Text, SharedText>) bool read(const element& value, Text& text) {
  std::string_view view;
  if (value.get_string().get(view) != simdjson::SUCCESS) return false;
  text = Text(view);
  return true;
}

template <typename Value>
bool read(const element& value, std::vector<Value>& list) {
  simdjson::dom::array array;
  if (value.get_array().get(array) != simdjson::SUCCESS) return false;
  list.reserve(array.size());
  for (const element each : array) {
    if (!read(each, list.emplace_back())) return false;
  }
  return true;
}

template <typename Value>
bool read(const element& value, HashMap<SharedText, Value>& map) {
  object fields;
  if (value.get_object().get(fields) != simdjson::SUCCESS) return false;
  map.reserve(fields.size());
  for (const auto& field : fields) {
    if (!read(field.value, map[SharedText(field.key)])) return false;
  }
  return true;
}

// `previous` is the map before this one: mostly it has the same keys at the same places.
template <typename Value>
bool read(const element& value, SharedMap<Value>& map, SharedKeys& keys,
          const SharedMap<Value>& previous) {
  object fields;
  if (value.get_object().get(fields) != simdjson::SUCCESS) return false;
  std::vector<typename SharedMap<Value>::Entry> entries;
  entries.reserve(fields.size());
  for (const auto& field : fields) {
    const std::size_t place = entries.size();
    const SharedText* const guess =
        place < previous.size() ? &previous.begin()[place].key : nullptr;
    const bool isRight = guess != nullptr && *guess == std::string_view(field.key);
    entries.push_back({isRight ? *guess : keys.shared(field.key), Value()});
    if (!read(field.value, entries.back().value)) return false;
  }
  map = SharedMap<Value>(std::move(entries));
  return true;
}

// The fields of one record. Every call tells whether the record can still be whole.
class Fields {
 public:
  explicit Fields(const element& value)
      : isWhole_(value.get_object().get(fields_) == simdjson::SUCCESS) {}

  template <typename Value, typename... Help>
  void required(std::string_view name, Value& value, Help&... help) {
    element found;
    isWhole_ = isWhole_ && find(name, found) && read(found, value, help...);
  }

  template <typename Value>
  void optional(std::string_view name, std::optional<Value>& value) {
    element found;
    if (isWhole_ && find(name, found)) isWhole_ = read(found, value.emplace());
  }

  bool isWhole() const { return isWhole_; }

 private:
  bool find(std::string_view name, element& found) const {
    bool isThere = false;
    for (const auto& field : fields_) {
      if (field.key != name) continue;
      isThere = !field.value.is_null();
      found = field.value;
    }
    return isThere;
  }

  object fields_;
  bool isWhole_;
};

bool read(const element& value, DischargeSession::SleepMark& mark) {
  Fields fields(value);
  fields.required("time", mark.time);
  fields.optional("percent", mark.percent);
  fields.optional("remainingWh", mark.remainingWh);
  return fields.isWhole();
}

bool read(const element& value, HistoryPoint& point, SharedKeys& keys,
          const HistoryPoint& previous) {
  Fields fields(value);
  fields.required("time", point.time);
  fields.optional("systemWatts", point.systemWatts);
  fields.required("groupWatts", point.groupWatts, keys, previous.groupWatts);
  fields.optional("temperature", point.temperature);
  fields.required("cpuPercent", point.cpuPercent);
  fields.optional("label", point.label);
  return fields.isWhole();
}

bool read(const element& value, DailyRecord& day, SharedKeys& keys, const DailyRecord& previous) {
  Fields fields(value);
  fields.required("day", day.day);
  fields.required("wattHours", day.wattHours);
  fields.required("appWattHours", day.appWattHours, keys, previous.appWattHours);
  fields.required("appNames", day.appNames, keys, previous.appNames);
  fields.optional("health", day.health);
  fields.optional("cycles", day.cycles);
  fields.optional("fullWh", day.fullWh);
  return fields.isWhole();
}

bool read(const element& value, DayLedger& ledger) {
  Fields fields(value);
  fields.required("day", ledger.day);
  fields.required("totalWattHours", ledger.totalWattHours);
  fields.required("groupWattHours", ledger.groupWattHours);
  fields.required("groupNames", ledger.groupNames);
  fields.required("hotSeconds", ledger.hotSeconds);
  fields.required("spells", ledger.spells);
  fields.required("longestSpellSeconds", ledger.longestSpellSeconds);
  fields.required("peakWatts", ledger.peakWatts);
  fields.optional("peakTime", ledger.peakTime);
  fields.optional("peakLabel", ledger.peakLabel);
  fields.required("spellSeconds", ledger.spellSeconds);
  return fields.isWhole();
}

bool read(const element& value, DischargeSession& session) {
  Fields fields(value);
  fields.required("start", session.start);
  fields.optional("startPercent", session.startPercent);
  fields.required("lastTime", session.lastTime);
  fields.required("totalWattHours", session.totalWattHours);
  fields.required("groupWattHours", session.groupWattHours);
  fields.required("groupNames", session.groupNames);
  fields.required("asleepSeconds", session.asleepSeconds);
  fields.required("asleepPercent", session.asleepPercent);
  fields.required("asleepWattHours", session.asleepWattHours);
  fields.optional("sleepStart", session.sleepStart);
  return fields.isWhole();
}

// A list of records that share the texts of their keys.
template <typename Record>
bool read(const element& value, std::vector<Record>& records, SharedKeys& keys) {
  simdjson::dom::array array;
  if (value.get_array().get(array) != simdjson::SUCCESS) return false;
  const Record none;
  records.reserve(array.size());
  for (const element each : array) {
    Record record;
    if (!read(each, record, keys, records.empty() ? none : records.back())) return false;
    records.push_back(std::move(record));
  }
  return true;
}

// What a text holds, as long as this lives.
class Document {
 public:
  explicit Document(std::string_view json)
      : isRead_(parser_.parse(simdjson::padded_string(json)).get(root_) == simdjson::SUCCESS) {}

  bool isRead() const { return isRead_; }
  const element& root() const { return root_; }

 private:
  simdjson::dom::parser parser_;
  element root_;
  bool isRead_;
};

template <typename Record>
std::optional<Record> recordOf(std::string_view json) {
  const Document document(json);
  Record record;
  if (!document.isRead() || !read(document.root(), record)) return std::nullopt;
  return record;
}

}  // namespace

std::optional<std::vector<HistoryPoint>> historyOfJson(std::string_view json) {
  const Document document(json);
  SharedKeys keys;
  std::vector<HistoryPoint> points;
  if (!document.isRead() || !read(document.root(), points, keys)) return std::nullopt;
  return points;
}

std::optional<DayLedger> ledgerOfJson(std::string_view json) {
  return recordOf<DayLedger>(json);
}

std::optional<Archive> archiveOfJson(std::string_view json) {
  const Document document(json);
  if (!document.isRead()) return std::nullopt;
  SharedKeys keys;
  std::vector<DailyRecord> days;
  Fields fields(document.root());
  fields.required("days", days, keys);
  if (!fields.isWhole()) return std::nullopt;
  return Archive(std::move(days));
}

std::optional<DischargeSession> dischargeOfJson(std::string_view json) {
  return recordOf<DischargeSession>(json);
}

std::optional<PowerBaseline> baselineOfJson(std::string_view json) {
  const Document document(json);
  if (!document.isRead()) return std::nullopt;
  std::vector<float> samples;
  double lastAdded = 0;
  Fields fields(document.root());
  fields.required("samples", samples);
  fields.required("lastAdded", lastAdded);
  if (!fields.isWhole()) return std::nullopt;
  return PowerBaseline(std::move(samples), lastAdded);
}

}  // namespace embrix
