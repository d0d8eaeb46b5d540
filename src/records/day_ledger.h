// One calendar day: how much energy the machine and each app used, how long it ran hot and in how
// many spells, when the peak was and who caused it. Fed at every frame, on the main thread. It
// knows one day only; past days are the archive's.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "base/shared_text.h"
#include "frame/app_group.h"
#include "records/calendar_day.h"

namespace embrix {

struct DayLedger {
  // One group at one frame.
  struct Entry {
    SharedText key;
    SharedText name;
    double watts = 0;

    bool operator==(const Entry&) const = default;
  };

  // What one frame tells.
  struct Step {
    std::string_view day;           // of the frame, as dayKey() gives it
    double now = 0;                 // of the frame, seconds since 1970
    std::optional<double> elapsed;  // seconds since the frame before; absent for the first of a run
    double totalWatts = 0;          // of the whole machine
    double warmWatts = 0;           // the threshold from which on the machine counts as hot here
    std::span<const Entry> entries;
    std::optional<SharedText> label;  // whom the verdict names
  };

  // Groups that draw less leave no trace.
  static constexpr double kLeastWatts = 0.05;
  // Between two frames at most so much counts, however long the machine slept: seconds.
  static constexpr double kLongestStep = 30;
  // A rise counts as a spell once it has lasted so long: seconds.
  static constexpr double kShortestSpell = 30;

  std::string day;
  double totalWattHours = 0;
  HashMap<SharedText, double> groupWattHours;
  HashMap<SharedText, SharedText> groupNames;  // the last display name
  double hotSeconds = 0;                       // at or above the warm threshold
  std::int64_t spells = 0;
  double longestSpellSeconds = 0;  // of short rises, too
  double peakWatts = 0;
  std::optional<double> peakTime;       // seconds since 1970
  std::optional<SharedText> peakLabel;  // absent when nobody was named at the peak
  double spellSeconds = 0;              // of the rise that is going on; 0 when there is none

  // A day on which nothing was recorded yet.
  static DayLedger fresh(std::string_view day);

  static std::string dayKey(double date, const Calendar& calendar);

  // The groups that count, as entries.
  static std::vector<Entry> entriesOf(std::span<const AppGroup> groups);

  // Begins the day anew when the step's is another, then adds the energy and the heat since the
  // frame before. A figure that is not finite was not measured and adds nothing.
  void record(const Step& step);

  bool operator==(const DayLedger&) const = default;

 private:
  void addEnergy(const Step& step, double seconds);
  void addHeat(const Step& step, double seconds);
};

}  // namespace embrix
