// One stretch of running on battery, from unplugging to the next time on power: watt-hours by app,
// and what went while asleep. It survives restarts, and stays after plugging in until the next
// unplugging. Main thread.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/hash_map.h"
#include "base/shared_text.h"
#include "frame/app_group.h"

namespace embrix {

// The charge when the machine went to sleep.
struct DischargeSleepMark {
  double time = 0;  // seconds since 1970
  std::optional<int> percent;
  std::optional<double> remainingWh;

  bool operator==(const DischargeSleepMark&) const = default;
};

struct DischargeSession {
  // One group at one frame.
  struct Entry {
    SharedText key;
    SharedText name;
    double watts = 0;

    bool operator==(const Entry&) const = default;
  };

  using SleepMark = DischargeSleepMark;

  // One line of where the charge went.
  struct Share {
    std::string id;  // the group key, or "system"
    std::string name;
    double wattHours = 0;
    double share = 0;  // of totalWattHours, 0 to 1

    bool operator==(const Share&) const = default;
  };

  // Groups that draw less are passed over: a lower bar than the ledger's, since on battery the
  // small ones add up to what the user is looking for.
  static constexpr double kLeastWatts = 0.02;
  static constexpr std::size_t kMostGroups = 40;  // of a frame
  // Between two frames at most so much counts, however long the machine slept: seconds.
  static constexpr double kLongestStep = 30;

  double start = 0;                 // seconds since 1970
  std::optional<int> startPercent;  // charge at the start
  double lastTime = 0;              // of the last frame or wake, seconds since 1970
  double totalWattHours = 0;        // of the whole machine, awake
  HashMap<SharedText, double> groupWattHours;
  HashMap<SharedText, SharedText> groupNames;
  double asleepSeconds = 0;
  int asleepPercent = 0;  // points of charge
  double asleepWattHours = 0;
  std::optional<SleepMark> sleepStart;  // while asleep

  // A session that begins now.
  static DischargeSession begun(double now, std::optional<int> percent);

  // The groups that count of a frame's, which come with the largest first.
  static std::vector<Entry> entriesOf(std::span<const AppGroup> groups);

  // Adds what was used in the `dt` seconds up to `time`. A figure that is not finite was not
  // measured and adds nothing.
  void record(double time, double totalWatts, std::span<const Entry> groups, double dt);

  // Adds what was lost since the sleep mark, and clears it. Nothing without a mark.
  void didWake(double time, std::optional<int> percent, std::optional<double> remainingWh);

  // The `limit` largest apps, and what the rest of the machine took as one more line, largest
  // first. Apps beyond the limit are in no line.
  std::vector<Share> shares(int limit) const;

  // Points of charge lost since the start, those lost asleep among them; never below 0. Absent when
  // either charge is not known.
  std::optional<int> percentUsed(std::optional<int> percentNow) const;

  bool operator==(const DischargeSession&) const = default;
};

}  // namespace embrix
