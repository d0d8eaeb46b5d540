#include "model/battery_time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace embrix {
namespace {

BatteryReading discharging(std::optional<int> minutes, std::optional<double> remainingWh) {
  BatteryReading battery;
  battery.minutesRemaining = minutes;
  battery.remainingWh = remainingWh;
  return battery;
}

BatteryReading powered(std::optional<double> fullWh) {
  BatteryReading battery = discharging(100, 10);
  battery.externalConnected = true;
  battery.fullWh = fullWh;
  return battery;
}

BatteryReading charging() {
  BatteryReading battery = powered(60);
  battery.externalConnected = false;
  battery.isCharging = true;
  return battery;
}

struct RuntimeCase {
  std::string label;
  BatteryReading battery;
  double present = 0;
  double watts = 0;
  std::optional<double> expected;
};

class RuntimeRule : public testing::TestWithParam<RuntimeCase> {};

TEST_P(RuntimeRule, GivesMinutes) {
  const auto& [label, battery, present, watts, expected] = GetParam();
  EXPECT_EQ(BatteryTime::runtime(battery, present, watts), expected);
}

INSTANTIATE_TEST_SUITE_P(
    BatteryTimeTest, RuntimeRule,
    testing::Values(RuntimeCase{"TheSystemsEstimateScaled", discharging(300, 1), 10, 5, 600},
                    RuntimeCase{"BelowOneWattAsAtOne", discharging(300, 1), 10, 0.2, 3000},
                    RuntimeCase{"AtANegativeAsAtOne", discharging(300, 1), 10, -7, 3000},
                    RuntimeCase{"AtNoNumberAsAtOne", discharging(300, 1), 10, std::nan(""), 3000},
                    RuntimeCase{"ByTheChargeAlone", discharging({}, 50), 10, 25, 120},
                    RuntimeCase{"AnEmptyCharge", discharging({}, 0), 10, 25, 0},
                    RuntimeCase{"ANegativeCharge", discharging({}, -1), 10, 25, 0},
                    RuntimeCase{"NothingKnown", discharging({}, {}), 10, 25, {}},
                    RuntimeCase{"NothingDrawn", discharging(300, 50), 0, 5, {}},
                    RuntimeCase{"OnPowerAFullCharge", powered(60), 10, 30, 120},
                    RuntimeCase{"ChargingAFullCharge", charging(), 10, 30, 120},
                    RuntimeCase{"OnPowerWithoutItsSize", powered({}), 10, 30, {}},
                    RuntimeCase{"OnPowerWithASizeOfZero", powered(0), 10, 30, 0}),
    [](const auto& test) { return test.param.label; });

TEST(BatteryTimeTest, TheGainIsWhatTheRestLastsLonger) {
  // 1000 watt-minutes: 100 minutes at 10 W, 200 at 5 W.
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 10, 5), 100);
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 10, 0), std::nullopt);
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 10, -1), std::nullopt);
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 10, std::nan("")), std::nullopt);
  EXPECT_EQ(BatteryTime::gain(discharging({}, {}), 10, 5), std::nullopt);
}

TEST(BatteryTimeTest, WithLessThanAWattLeftTheGainIsAsAtOne) {
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 10, 9.5), 900);
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 10, 50), 900);
}

TEST(BatteryTimeTest, BelowOneWattNothingIsLost) {
  EXPECT_EQ(BatteryTime::gain(discharging(100, {}), 0.5, 0.2), 0);
  EXPECT_EQ(BatteryTime::gain(discharging(-100, {}), 10, 5), 0) << "of a time that is none";
}

struct MeaningfulCase {
  std::string label;
  int minutesRemaining = 0;
  double present = 0;
  double saved = 0;
  std::optional<double> expected;
};

class MeaningfulRule : public testing::TestWithParam<MeaningfulCase> {};

TEST_P(MeaningfulRule, KeepsSillyPromisesAway) {
  const auto& [label, minutes, present, saved, expected] = GetParam();
  EXPECT_EQ(BatteryTime::meaningfulGain(discharging(minutes, {}), present, saved), expected);
}

INSTANTIATE_TEST_SUITE_P(BatteryTimeTest, MeaningfulRule,
                         testing::Values(MeaningfulCase{"FourHundredMinutes", 400, 10, 5, {}},
                                         MeaningfulCase{"ThreeHundredMinutes", 300, 10, 5, 300},
                                         MeaningfulCase{"OneMinute", 1, 10, 5, 1},
                                         // 99 times 100 watt-minutes over 99 W: 100 minutes for 99.
                                         MeaningfulCase{"JustOneMinute", 99, 100, 1, 1},
                                         MeaningfulCase{"NineTenthsOfAMinute", 9, 11, 1, {}},
                                         MeaningfulCase{"TwoWattsLeft", 100, 4, 2, {}},
                                         MeaningfulCase{"ThreeWattsLeft", 100, 6, 3, 100},
                                         MeaningfulCase{"NothingSaved", 100, 10, 0, {}}),
                         [](const auto& test) { return test.param.label; });

}  // namespace
}  // namespace embrix
