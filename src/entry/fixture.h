// A believable working day, made in code: what pictures and test runs show in place of a machine.
// Every time is told from a given moment; the numbers carry no rules. Main thread for what touches
// the model, any thread for the rest.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "cleanup/cleanup_spot.h"
#include "frame/frame.h"
#include "model/power_model.h"

namespace embrix {

struct Fixture {
  // The levels at which the demo data is a warm machine, watts.
  static constexpr double kWarmWatts = 24;
  static constexpr double kHotWatts = 41;

  // Sets the model to demo data, its cleanup with it, and the thresholds to fixed ones. Nothing is
  // sampled from then on.
  static void load(PowerModel& model, double now);

  // `uid` is the user whose processes they are.
  static Frame frame(double now, std::uint32_t uid);
  static std::vector<AppGroup> groups(std::uint32_t uid);
  static std::vector<ForgottenItem> forgotten(std::uint32_t uid);
  static std::vector<LocalServer> servers(std::uint32_t uid);

  static HashMap<SharedText, double> tenMinuteAverages();
  static History history(double now);
  static DischargeSession discharge(double now);
  static Archive archive(double now);
  static DayLedger ledger(double now);
  static Overnight overnight(double now);

  static std::vector<CleanupSpot> cleanup(double now);
};

}  // namespace embrix
