// Battery registries of real machines. Beside each stands what matters of it, for a run that is not
// given the captures.
#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"
#include "ioreg_text.h"
#include "sampling/battery_reader.h"

namespace embrix {
namespace {

BatteryReading readingOf(PropertyMap registry) {
  ScriptedHost world;
  world.hasBattery = true;
  world.batteryRegistry = std::move(registry);
  Host host = world.host();
  return BatteryReader(*host.battery).read().value();
}

// Full and not charging, on a 45 W adapter. The excerpt has neither a voltage nor a current nor
// whether the adapter is there, so only the load is left: 14960 mW. FedExternalConnected=1 and
// other keys of similar name stand inside lists and do not count.
TEST(BatteryCapturesTest, FullOnTheAdapter) {
  const auto registry =
      ioregProperties(captureOr("02_battery/m1pro_macos15.7.5_ac_full_not_charging_45W.txt",
                                R"(      "TimeRemaining" = 65535
      "FedDetails" = ({"FedDesignCapacity"=0,"FedExternalConnected"=1})
      "PowerTelemetryData" = {"SystemLoad"=14960,"SystemVoltageIn"=19930,"SystemPowerIn"=14960,"BatteryPower"=0,"AccumulatedBatteryDischarge"=18446744072683327475}
      "MaxCapacity" = 100
)"));
  EXPECT_EQ(readingOf(registry), BatteryReading{.systemWatts = 14.96});
}

constexpr std::string_view kCharging = R"(      "Amperage" = 1926
      "BatteryData" = {"AdapterPower"=,"CellWom"=(0,0),"PassedCharge"=18446744073709550538,"DesignCapacity"=8400,"CycleCount"=291,"Voltage"=11863,"SystemPower"=,"LifetimeData"={"Raw"=<0000>,"MaximumDischargeCurrent"=18446744073709544743}}
      "PowerTelemetryData" = {"SystemLoad"=19852,"SystemPowerIn"=42825,"BatteryPower"=22973}
      "InstantAmperage" = 1926
      "IsCharging" = Yes
      "Voltage" = 11928
)";

// Charging with 11928 mV x 1926 mA. The excerpt does not say that the adapter is there, so the load
// counts: 19852 mW. The cycle count and the design capacity stand one level deeper, inside
// BatteryData, and so does another voltage.
TEST(BatteryCapturesTest, Charging) {
  const auto registry =
      ioregProperties(captureOr("02_battery/m1pro_macos15.7.5_charging_71pct_45W.txt", kCharging));
  EXPECT_EQ(readingOf(registry), BatteryReading{.systemWatts = 19.852});
}

// The same machine with the adapter made known. Input less charge, 42.825 W - 22.973328 W, meets
// the machine's own figure of its load to within a milliwatt: the two roads agree.
TEST(BatteryCapturesTest, ChargingKnownToBeOnTheAdapter) {
  auto registry =
      ioregProperties(captureOr("02_battery/m1pro_macos15.7.5_charging_71pct_45W.txt", kCharging));
  registry["ExternalConnected"] = true;
  const double watts = readingOf(registry).systemWatts.value();
  EXPECT_DOUBLE_EQ(watts, 42.825 - 11928 * 1926 / 1e6);
  EXPECT_NEAR(watts, 19.852, 0.001);
}

// One line out of a tree, with the branches of the tree before it: 13177 mW.
TEST(BatteryCapturesTest, OnTheAdapterWithoutCharging) {
  const auto registry = ioregProperties(captureOr(
      "02_battery/m4air_macos27_ac_not_charging_line.txt",
      R"(  |   "PowerTelemetryData" = {"SystemLoad"=13177,"SystemVoltageIn"=19825,"SystemPowerIn"=13177,"BatteryPower"=0})"));
  EXPECT_EQ(readingOf(registry), BatteryReading{.systemWatts = 13.177});
}

// What stands inside BatteryData is not the battery service's own: voltage 13134, design capacity
// 8579 and 11 cycles leave no trace.
TEST(BatteryCapturesTest, KeysOfADeeperLevelDoNotCount) {
  std::string text = captureOr(
      "02_battery/m5pro_Mac17,8_batterydata_discharging_99pct.txt",
      R"({"AdapterPower"=,"PassedCharge"=18446744073709550257,"DesignCapacity"=8579,"BatteryState"=<0083e4>,"IdealCRate"=,"Qmax"=(9270,9277,9259),"CycleCount"=11,"Voltage"=13134,"LifetimeData"={"Raw"=<008c>,"MaximumDischargeCurrent"=18446744073709539763},"Ra02"=24})");
  while (text.ends_with('\n')) text.pop_back();
  const Property inner = ioregValue(text);
  ASSERT_EQ(integerAt(std::get<PropertyMap>(inner.value), "DesignCapacity"), 8579);
  EXPECT_EQ(readingOf({{"BatteryData", inner}}), BatteryReading{});
}

// Just unplugged: the telemetry still shows the adapter's 8580 mW, while 12336 mV x -73 mA is less
// than a watt. The load figure ranks first, stale as it is.
TEST(BatteryCapturesTest, TelemetryThatLagsBehindTheUnplugging) {
  const auto registry =
      ioregProperties(captureOr("02_battery/m_series_on_battery_trimmed_stale_telemetry.txt",
                                R"(+-o AppleSmartBattery  <class AppleSmartBattery, id 0x100000e45>
  | {
  |   "ExternalConnected" = No
  |   "Voltage" = 12336
  |   "CurrentCapacity" = 80
  |   "PowerTelemetryData" = {"SystemLoad"=8580,"SystemPowerIn"=8580,"SystemVoltageIn"=19544}
  |   "CycleCount" = 13
  |   "BatteryData" = {"FullChargeCapacity"=8745,"DesignCapacity"=9000}
  |   "InstantAmperage" = 18446744073709551543
  |   "Amperage" = 18446744073709551543
  |   "IsCharging" = No
  | }
)"));
  EXPECT_EQ(integerAt(registry, "InstantAmperage"), -73);
  EXPECT_EQ(readingOf(registry), (BatteryReading{.systemWatts = 8.58, .cycleCount = 13}));
}

// A drain of 2607 mA, but no voltage under its proper key and no load among the telemetry: the
// power is unknown, not zero.
TEST(BatteryCapturesTest, DischargingWithoutAVoltage) {
  auto registry = ioregProperties(captureOr("02_battery/discharge_wrapped_lines.txt",
                                            R"(    "AppleRawBatteryVoltage" = 11011
    "Amperage" = 18446744073709549009
    "PowerTelemetryData" = {"BatteryPower"=18446744073709520998}
    "CycleCount" = 542
)"));
  EXPECT_EQ(readingOf(registry), BatteryReading{.cycleCount = 542});
  registry["Voltage"] = 11011;
  EXPECT_DOUBLE_EQ(readingOf(registry).systemWatts.value(), 11011 * 2607 / 1e6);
}

}  // namespace
}  // namespace embrix
