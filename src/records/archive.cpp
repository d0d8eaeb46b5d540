#include "records/archive.h"

#include <algorithm>
#include <utility>

#include "base/made_once.h"
#include "records/record_encoding.h"

namespace embrix {

// The JSON of a day, made when a save first needs it: past days never change again.
class Archive::DayText {
 public:
  explicit DayText(DailyRecord day) : day_(std::move(day)) {}

  std::string_view view() const {
    return text_.get([this] { return jsonOf(day_); });
  }

 private:
  DailyRecord day_;
  MadeOnce<std::string> text_;
};

namespace {

using Energy = SharedMap<double>::Entry;

bool isEarlier(const DailyRecord& a, const DailyRecord& b) {
  return a.day < b.day;
}

// The biggest groups; of equal ones those whose key comes first.
std::vector<Energy> biggest(const HashMap<SharedText, double>& groups, std::size_t count) {
  std::vector<Energy> all;
  all.reserve(groups.size());
  for (const auto& [key, wattHours] : groups) all.push_back({key, wattHours});
  const auto end = all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), count));
  std::partial_sort(all.begin(), end, all.end(), [](const Energy& a, const Energy& b) {
    return a.value != b.value ? a.value > b.value : a.key < b.key;
  });
  all.erase(end, all.end());
  return all;
}

DailyRecord recordOf(const DayLedger& ledger, const std::optional<BatteryReading>& battery) {
  std::vector<Energy> apps = biggest(ledger.groupWattHours, Archive::kMostApps);
  std::vector<SharedMap<SharedText>::Entry> names;
  names.reserve(apps.size());
  for (const Energy& app : apps) {
    const auto name = ledger.groupNames.find(app.key);
    if (name != ledger.groupNames.end()) names.push_back({app.key, name->second});
  }
  DailyRecord record;
  record.day = ledger.day;
  record.wattHours = ledger.totalWattHours;
  record.appWattHours = SharedMap<double>(std::move(apps));
  record.appNames = SharedMap<SharedText>(std::move(names));
  if (battery) {
    record.health = battery->healthPercent;
    record.cycles = battery->cycleCount;
    record.fullWh = battery->fullWh;
  }
  return record;
}

}  // namespace

Archive::Archive(std::vector<DailyRecord> days) : days_(std::move(days)) {
  std::stable_sort(days_.begin(), days_.end(), isEarlier);
  texts_.reserve(days_.size());
  for (const DailyRecord& day : days_) texts_.push_back(std::make_shared<const DayText>(day));
}

void Archive::record(const DayLedger& ledger, const std::optional<BatteryReading>& battery) {
  DailyRecord record = recordOf(ledger, battery);
  const auto found = std::find_if(days_.begin(), days_.end(),
                                  [&](const DailyRecord& each) { return each.day == record.day; });
  if (found != days_.end()) {
    if (!record.health) record.health = found->health;
    if (!record.cycles) record.cycles = found->cycles;
    if (!record.fullWh) record.fullWh = found->fullWh;
    if (*found == record) return;
    *found = record;
    texts_[static_cast<std::size_t>(found - days_.begin())] =
        std::make_shared<const DayText>(std::move(record));
    return;
  }
  const auto place = std::upper_bound(days_.begin(), days_.end(), record, isEarlier);
  const auto textPlace = texts_.begin() + (place - days_.begin());
  texts_.insert(textPlace, std::make_shared<const DayText>(record));
  days_.insert(place, std::move(record));
  if (days_.size() > kMostDays) {
    const auto excess = static_cast<std::ptrdiff_t>(days_.size() - kMostDays);
    days_.erase(days_.begin(), days_.begin() + excess);
    texts_.erase(texts_.begin(), texts_.begin() + excess);
  }
}

std::span<const DailyRecord> Archive::selected(int lastDays, std::string_view endingOn) const {
  const auto end = std::upper_bound(
      days_.begin(), days_.end(), endingOn,
      [](std::string_view day, const DailyRecord& each) { return day < each.day; });
  const auto upTo = static_cast<std::size_t>(end - days_.begin());
  const auto count = std::min(upTo, static_cast<std::size_t>(std::max(lastDays, 0)));
  return std::span(days_).subspan(upTo - count, count);
}

double Archive::totalWattHours(int lastDays, std::string_view endingOn) const {
  double sum = 0;
  for (const DailyRecord& day : selected(lastDays, endingOn)) sum += day.wattHours;
  return sum;
}

std::vector<Archive::App> Archive::apps(int lastDays, std::string_view endingOn) const {
  const auto days = selected(lastDays, endingOn);
  HashMap<SharedText, double> sums;
  for (const DailyRecord& day : days) {
    for (const auto& [key, wattHours] : day.appWattHours) sums[key] += wattHours;
  }
  HashMap<SharedText, SharedText> names;  // the latest
  for (const DailyRecord& day : days) {
    for (const auto& [key, name] : day.appNames) names[key] = name;
  }
  std::vector<App> apps;
  apps.reserve(sums.size());
  for (const auto& [key, wattHours] : sums) {
    const auto name = names.find(key);
    apps.push_back({.key = key.string(),
                    .name = (name == names.end() ? key : name->second).string(),
                    .wattHours = wattHours});
  }
  std::sort(apps.begin(), apps.end(), [](const App& a, const App& b) {
    return a.wattHours != b.wattHours ? a.wattHours > b.wattHours : a.key < b.key;
  });
  return apps;
}

std::vector<Archive::Health> Archive::health() const {
  std::vector<Health> known;
  for (const DailyRecord& day : days_) {
    if (day.health) known.push_back({day.day, *day.health});
  }
  return known;
}

std::vector<std::string_view> Archive::text() const {
  std::vector<std::string_view> pieces;
  pieces.reserve(2 * texts_.size() + 2);
  pieces.emplace_back("{\"days\":[");
  for (const auto& day : texts_) {
    if (pieces.size() > 1) pieces.emplace_back(",");
    pieces.push_back(day->view());
  }
  pieces.emplace_back("]}");
  return pieces;
}

}  // namespace embrix
