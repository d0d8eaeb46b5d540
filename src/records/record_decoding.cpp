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

// One text for all equal ones: a group stands in thousands of points.
class SeenTexts {
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

// Whole numbers also as 50.0, as others may write them.
bool read(const element& value, std::int64_t& number) {
  if (value.get_int64().get(number) == simdjson::SUCCESS) return true;
  constexpr double kLimit = 0x1p63;
  double wide = 0;
  if (!read(value, wide) || std::trunc(wide) != wide || !(wide >= -kLimit && wide < kLimit)) {
    return false;
  }
  number = static_cast<std::int64_t>(wide);
  return true;
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

bool read(const element& value, double& number, SeenTexts&) {
  return read(value, number);
}

bool read(const element& value, SharedText& text, SeenTexts& seen) {
  std::string_view view;
  if (value.get_string().get(view) != simdjson::SUCCESS) return false;
  text = seen.shared(view);
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
bool read(const element& value, SharedMap<Value>& map, SeenTexts& seen,
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
    entries.push_back({isRight ? *guess : seen.shared(field.key), Value()});
    if (!read(field.value, entries.back().value, seen)) return false;
  }
  map = SharedMap<Value>(std::move(entries));
  return true;
}

// A map from texts to numbers that nobody needs.
struct SkippedNumbers {};

bool read(const element& value, SkippedNumbers&) {
  object fields;
  if (value.get_object().get(fields) != simdjson::SUCCESS) return false;
  return std::all_of(fields.begin(), fields.end(),
                     [](const auto& field) { return field.value.is_number(); });
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

  template <typename Value, typename... Help>
  void optional(std::string_view name, std::optional<Value>& value, Help&... help) {
    element found;
    if (isWhole_ && find(name, found)) isWhole_ = read(found, value.emplace(), help...);
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

// A point that is not newer than that is only looked at, and then skipped.
bool read(const element& value, std::vector<HistoryPoint>& points, SeenTexts& seen,
          const double& newerThan) {
  simdjson::dom::array array;
  if (value.get_array().get(array) != simdjson::SUCCESS) return false;
  const SharedMap<double> none;
  for (const element each : array) {
    HistoryPoint point;
    Fields fields(each);
    fields.required("time", point.time);
    fields.optional("systemWatts", point.systemWatts);
    fields.optional("temperature", point.temperature);
    fields.required("cpuPercent", point.cpuPercent);
    fields.optional("label", point.label, seen);
    const bool isWanted = point.time > newerThan;
    if (isWanted) {
      fields.required("groupWatts", point.groupWatts, seen,
                      points.empty() ? none : points.back().groupWatts);
    } else {
      SkippedNumbers watts;
      fields.required("groupWatts", watts);
    }
    if (!fields.isWhole()) return false;
    if (isWanted) points.push_back(std::move(point));
  }
  return true;
}

bool read(const element& value, DailyRecord& day, SeenTexts& seen, const DailyRecord& previous) {
  Fields fields(value);
  fields.required("day", day.day);
  fields.required("wattHours", day.wattHours);
  fields.required("appWattHours", day.appWattHours, seen, previous.appWattHours);
  fields.required("appNames", day.appNames, seen, previous.appNames);
  fields.optional("health", day.health);
  fields.optional("cycles", day.cycles);
  fields.optional("fullWh", day.fullWh);
  return fields.isWhole();
}

// Archived days, which share their texts.
bool read(const element& value, std::vector<DailyRecord>& days, SeenTexts& seen) {
  simdjson::dom::array array;
  if (value.get_array().get(array) != simdjson::SUCCESS) return false;
  const DailyRecord none;
  days.reserve(array.size());
  for (const element each : array) {
    DailyRecord day;
    if (!read(each, day, seen, days.empty() ? none : days.back())) return false;
    days.push_back(std::move(day));
  }
  return true;
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

std::optional<std::vector<HistoryPoint>> historyOfJson(std::string_view json, double newerThan) {
  const Document document(json);
  SeenTexts seen;
  std::vector<HistoryPoint> points;
  if (!document.isRead() || !read(document.root(), points, seen, newerThan)) return std::nullopt;
  return points;
}

std::optional<DayLedger> ledgerOfJson(std::string_view json) {
  return recordOf<DayLedger>(json);
}

std::optional<Archive> archiveOfJson(std::string_view json) {
  const Document document(json);
  if (!document.isRead()) return std::nullopt;
  SeenTexts seen;
  std::vector<DailyRecord> days;
  Fields fields(document.root());
  fields.required("days", days, seen);
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
