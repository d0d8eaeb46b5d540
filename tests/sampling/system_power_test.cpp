#include "sampling/system_power.h"

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

// As a registry hands out a negative number that it printed as unsigned: the same bits.
constexpr std::int64_t fromUnsigned(std::uint64_t bits) {
  return static_cast<std::int64_t>(bits);
}

PropertyMap with(PropertyMap properties, std::string_view key, Property value) {
  properties[std::string(key)] = std::move(value);
  return properties;
}

PropertyMap onBattery(PropertyMap more = {}) {
  return with(std::move(more), "ExternalConnected", false);
}

PropertyMap onAdapter(PropertyMap more = {}) {
  return with(std::move(more), "ExternalConnected", true);
}

PropertyMap telemetry(PropertyMap figures) {
  return {{"PowerTelemetryData", std::move(figures)}};
}

struct Case {
  std::string label;
  PropertyMap properties;
  std::optional<double> watts;
};

class SystemPowerTable : public testing::TestWithParam<Case> {};

TEST_P(SystemPowerTable, Watts) {
  const auto watts = SystemPower::watts(GetParam().properties);
  ASSERT_EQ(watts.has_value(), GetParam().watts.has_value());
  if (watts) {
    EXPECT_DOUBLE_EQ(*watts, *GetParam().watts);
  }
}

std::string label(const testing::TestParamInfo<Case>& info) {
  return info.param.label;
}

PropertyMap battery(PropertyMap base, int millivolts, int milliamperes) {
  base["Voltage"] = millivolts;
  base["InstantAmperage"] = milliamperes;
  return base;
}

const PropertyMap kIn30 = onAdapter(telemetry({{"SystemPowerIn", 30000}}));

INSTANTIATE_TEST_SUITE_P(
    OnTheAdapter, SystemPowerTable,
    testing::Values(
        Case{"NothingFlowsIntoOrOutOfTheBattery", battery(kIn30, 12000, 0), 30.0},
        Case{"WhatChargesTheBatteryIsNotTheMachines",
             battery(onAdapter(telemetry({{"SystemPowerIn", 50000}})), 10000, 2000), 30.0},
        Case{"ADrainIsAddedToTheInput", battery(kIn30, 10000, -500), 35.0},
        Case{"ChargingWithMoreThanComesInIsZero", battery(kIn30, 20000, 2000), 0.0},
        Case{"AnUnknownBatteryLeavesTheInput", kIn30, 30.0},
        Case{"AnUnknownVoltageLeavesTheInput", with(kIn30, "Amperage", -500), 30.0},
        Case{"TheInputWinsOverTheLoad",
             onAdapter(telemetry({{"SystemPowerIn", 30000}, {"SystemLoad", 29000}})), 30.0},
        Case{"AnInputOfZeroFallsThroughToTheLoad",
             onAdapter(telemetry({{"SystemPowerIn", 0}, {"SystemLoad", 7000}})), 7.0},
        Case{"AnInputOfOneMilliwattCounts",
             onAdapter(telemetry({{"SystemPowerIn", 1}, {"SystemLoad", 7000}})), 0.001},
        Case{"ANegativeInputFallsThroughToTheLoad",
             onAdapter(telemetry({{"SystemPowerIn", fromUnsigned(18446744073709520998ULL)},
                                  {"SystemLoad", 7000}})),
             7.0},
        Case{"WithoutTelemetryADrainStillCounts", battery(onAdapter(), 12000, -1000), 12.0}),
    label);

INSTANTIATE_TEST_SUITE_P(
    OnTheBattery, SystemPowerTable,
    testing::Values(
        Case{"TheLoadWinsOverTheAmperage",
             battery(onBattery(telemetry({{"SystemLoad", 12000}})), 12000, -500), 12.0},
        Case{"TheLoadWinsOverAChargingCurrent",
             battery(onBattery(telemetry({{"SystemLoad", 12000}})), 12000, 500), 12.0},
        Case{"TheInputDoesNotCount",
             onBattery(telemetry({{"SystemPowerIn", 30000}, {"SystemLoad", 12000}})), 12.0},
        Case{"ADrainWithoutTelemetry", battery(onBattery(), 12000, -1000), 12.0},
        Case{"AChargeWithoutTelemetryTellsNothing", battery(onBattery(), 12000, 1000),
             std::nullopt},
        Case{"NoCurrentTellsNothing", battery(onBattery(), 12000, 0), std::nullopt},
        Case{"ALoadOfZeroFallsThroughToTheDrain",
             battery(onBattery(telemetry({{"SystemLoad", 0}})), 12000, -1000), 12.0},
        Case{"AmperageStandsInForInstantAmperage",
             onBattery({{"Voltage", 12000}, {"Amperage", -1000}}), 12.0},
        Case{"InstantAmperageWinsOverAmperage",
             onBattery({{"Voltage", 12000}, {"InstantAmperage", -500}, {"Amperage", -1000}}), 6.0},
        Case{"AnInstantAmperageOfZeroIsNotMissing",
             onBattery({{"Voltage", 12000}, {"InstantAmperage", 0}, {"Amperage", -1000}}),
             std::nullopt},
        Case{"ANegativeCurrentPrintedAsUnsigned",
             onBattery({{"Voltage", 12336}, {"Amperage", fromUnsigned(18446744073709551543ULL)}}),
             12336 * 73 / 1e6},
        Case{"ANegativeCurrentPrintedAsUnsignedOf32Bits",
             onBattery({{"Voltage", 12000}, {"InstantAmperage", std::int64_t{4294966296}}}), 12.0},
        Case{"WithoutAVoltageACurrentTellsNothing", onBattery({{"Amperage", -1000}}), std::nullopt},
        Case{"NotToldWhetherOnTheAdapter", battery({}, 12000, -1000), 12.0},
        Case{"NothingAtAll", {}, std::nullopt}),
    label);

INSTANTIATE_TEST_SUITE_P(
    HostileInput, SystemPowerTable,
    testing::Values(
        Case{"TelemetryThatIsNoMap", onBattery({{"PowerTelemetryData", 12000}}), std::nullopt},
        Case{"ALoadThatIsText", onBattery(telemetry({{"SystemLoad", "12000"}})), std::nullopt},
        Case{"ALoadThatIsNoNumber", onBattery(telemetry({{"SystemLoad", std::nan("")}})),
             std::nullopt},
        Case{"ALoadBeyondAllReason", onBattery(telemetry({{"SystemLoad", kLargest}})),
             std::nullopt},
        Case{"AFractionalLoadLosesItsFraction", onBattery(telemetry({{"SystemLoad", 12000.9}})),
             12.0},
        Case{"AnAdapterFlagThatIsANumberIsNoFlag",
             with(telemetry({{"SystemPowerIn", 30000}}), "ExternalConnected", 1), std::nullopt},
        Case{"AWrongInstantAmperageFallsBack",
             onBattery({{"Voltage", 12000}, {"InstantAmperage", "fast"}, {"Amperage", -1000}}),
             12.0},
        Case{"TheLargestNumbersDoNotOverflow",
             onBattery({{"Voltage", std::numeric_limits<std::int32_t>::max()},
                        {"Amperage", std::numeric_limits<std::int32_t>::min()}}),
             2147483647.0 * 2147483648.0 / 1e6},
        Case{"NumbersBeyond32BitsAreNotMeasured",
             onBattery({{"Voltage", kLargest}, {"Amperage", -kLargest}}), std::nullopt},
        Case{"AVoltageAbove31BitsIsNotMeasured",
             onBattery({{"Voltage", std::int64_t{4294955296}}, {"Amperage", 1000}}), std::nullopt},
        Case{"ACurrentJustBeyond32BitsFallsBack",
             onBattery({{"Voltage", 12000},
                        {"InstantAmperage", std::int64_t{4294967296}},
                        {"Amperage", -500}}),
             6.0},
        Case{"ANegativeVoltageIsNotMeasured", battery(onBattery(), -12000, 1000), std::nullopt}),
    label);

}  // namespace
}  // namespace embrix
