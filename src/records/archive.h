// The days of more than a year, one small record for each, today among them: rewritten from the
// ledger at each save. Main thread; a copy may be read and turned into text on any.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/battery_reading.h"
#include "records/daily_record.h"
#include "records/day_ledger.h"

namespace embrix {

class Archive {
 public:
  static constexpr std::size_t kMostDays = 400;
  static constexpr std::size_t kMostApps = 40;  // in a day

  struct App {
    std::string key;
    std::string name;
    double wattHours = 0;

    bool operator==(const App&) const = default;
  };

  struct Health {
    std::string day;
    int percent = 0;

    bool operator==(const Health&) const = default;
  };

  Archive() = default;
  // Sorted by day, whatever the order they come in; days that are there twice stay.
  explicit Archive(std::vector<DailyRecord> days);

  // Ascending by day.
  std::span<const DailyRecord> days() const { return days_; }

  // Puts the ledger's day in, or in place of what stands for that day. Of a day that is there, what
  // the battery does not tell now stays as it was told before.
  void record(const DayLedger& ledger, const std::optional<BatteryReading>& battery);

  // The energy of the last so many recorded days up to and with `endingOn`; days without a record
  // are passed over.
  double totalWattHours(int lastDays, std::string_view endingOn) const;

  // Likewise by app, largest first. Each day knows its 40 biggest alone, so a long sum leaves out
  // apps that were small on every single day.
  std::vector<App> apps(int lastDays, std::string_view endingOn) const;

  // The battery's health on the days on which it was known.
  std::vector<Health> health() const;

  // One JSON object, in pieces that are valid as long as this archive stays as it is. Days that
  // were saved before are not formatted anew.
  std::vector<std::string_view> text() const;

  bool operator==(const Archive& other) const { return days_ == other.days_; }

 private:
  class DayText;

  std::span<const DailyRecord> selected(int lastDays, std::string_view endingOn) const;

  std::vector<DailyRecord> days_;
  std::vector<std::shared_ptr<const DayText>> texts_;  // of the days, in the same order
};

}  // namespace embrix
