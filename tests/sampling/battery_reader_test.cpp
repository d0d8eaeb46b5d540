#include "sampling/battery_reader.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();

PropertyMap description(PropertyMap more = {}) {
  more["Type"] = "InternalBattery";
  return more;
}

class BatteryReaderTest : public testing::Test {
 protected:
  BatteryReaderTest() { world.hasBattery = true; }

  BatteryReading read() {
    Host host = world.host();
    return BatteryReader(*host.battery).read().value();
  }

  BatteryReading readRegistry(PropertyMap registry) {
    world.batteryRegistry = std::move(registry);
    return read();
  }

  BatteryReading readSource(PropertyMap source) {
    world.powerSources = {description(std::move(source))};
    return read();
  }

  ScriptedHost world;
};

TEST_F(BatteryReaderTest, AMachineWithoutTheServiceHasNoReading) {
  world.hasBattery = false;
  world.batteryRegistry = {{"CycleCount", 12}};
  world.powerSources = {description({{"Current Capacity", 80}})};
  Host host = world.host();
  EXPECT_EQ(BatteryReader(*host.battery).read(), std::nullopt);
}

TEST_F(BatteryReaderTest, AServiceThatTellsNothingGivesAReadingWithoutFields) {
  EXPECT_EQ(read(), BatteryReading{});
}

TEST_F(BatteryReaderTest, AFullReadingOnBattery) {
  world.batteryRegistry = {
      {"AppleRawMaxCapacity", 5000},
      {"DesignCapacity", 6000},
      {"AppleRawCurrentCapacity", 2500},
      {"Voltage", 12000},
      {"CycleCount", 291},
      {"InstantAmperage", -1000},
      {"ExternalConnected", false},
      {"PowerTelemetryData", PropertyMap{{"SystemLoad", 12500}}},
  };
  world.powerSources = {description({{"Time to Empty", 192},
                                     {"Is Charging", false},
                                     {"Power Source State", "Battery Power"},
                                     {"Current Capacity", 51}})};
  EXPECT_EQ(read(), (BatteryReading{.systemWatts = 12.5,
                                    .percent = 51,
                                    .minutesRemaining = 192,
                                    .isCharging = false,
                                    .externalConnected = false,
                                    .healthPercent = 83,
                                    .cycleCount = 291,
                                    .remainingWh = 30.0,
                                    .fullWh = 60.0}));
}

TEST_F(BatteryReaderTest, AFailedRegistryLeavesWhatTheDescriptionTells) {
  world.batteryRegistry = {{"CycleCount", 291}};
  world.powerSources = {description({{"Current Capacity", 51}})};
  world.failing.insert("battery.registry");
  EXPECT_EQ(read(), BatteryReading{.percent = 51});
}

TEST_F(BatteryReaderTest, TheFirstInternalBatteryIsTheOneDescribed) {
  world.powerSources = {
      PropertyMap{{"Type", "UPS"}, {"Current Capacity", 7}}, PropertyMap{{"Current Capacity", 8}},
      description({{"Current Capacity", 9}}), description({{"Current Capacity", 10}})};
  EXPECT_EQ(read().percent, 9);
}

TEST_F(BatteryReaderTest, NoInternalBatteryMeansNoDescription) {
  world.powerSources = {PropertyMap{
      {"Type", "UPS"}, {"Current Capacity", 7}, {"Is Charging", true}, {"Time to Empty", 30}}};
  EXPECT_EQ(read(), BatteryReading{});
}

TEST_F(BatteryReaderTest, TheAdapterIsKnownByTheExactStateAlone) {
  struct Case {
    std::string label;
    Property state;
    bool expected;
  };
  for (const auto& [label, state, expected] : {
           Case{"adapter", "AC Power", true},
           Case{"battery", "Battery Power", false},
           Case{"another case", "ac power", false},
           Case{"another type", true, false},
       }) {
    SCOPED_TRACE(label);
    EXPECT_EQ(readSource({{"Power Source State", state}}).externalConnected, expected);
  }
}

TEST_F(BatteryReaderTest, TimeToEmptyBelowOneMinuteIsNoTime) {
  struct Case {
    std::string label;
    Property minutes;
    std::optional<int> expected;
  };
  for (const auto& [label, minutes, expected] : {
           Case{"one", 1, 1},
           Case{"zero", 0, std::nullopt},
           Case{"still being worked out", -1, std::nullopt},
           Case{"text", "90", std::nullopt},
           Case{"above every range", kLargest, std::nullopt},
       }) {
    SCOPED_TRACE(label);
    EXPECT_EQ(readSource({{"Time to Empty", minutes}}).minutesRemaining, expected);
  }
}

TEST_F(BatteryReaderTest, NoTimeToEmptyWhileChargingOrOnTheAdapter) {
  EXPECT_EQ(readSource({{"Time to Empty", 90}, {"Is Charging", true}}).minutesRemaining,
            std::nullopt);
  EXPECT_EQ(
      readSource({{"Time to Empty", 90}, {"Power Source State", "AC Power"}}).minutesRemaining,
      std::nullopt);
}

TEST_F(BatteryReaderTest, PercentIsAPercentageOrAbsent) {
  struct Case {
    std::string label;
    Property capacity;
    std::optional<int> expected;
  };
  for (const auto& [label, capacity, expected] : {
           Case{"empty is measured", 0, 0},
           Case{"full", 100, 100},
           Case{"above full", 101, std::nullopt},
           Case{"negative", -1, std::nullopt},
           Case{"far above", kLargest, std::nullopt},
           Case{"far below", kSmallest, std::nullopt},
           Case{"text", "80", std::nullopt},
           Case{"no number", std::nan(""), std::nullopt},
       }) {
    SCOPED_TRACE(label);
    EXPECT_EQ(readSource({{"Current Capacity", capacity}}).percent, expected);
  }
}

TEST_F(BatteryReaderTest, HealthIsRoundedWithHalvesAwayFromZeroAndNotClamped) {
  struct Case {
    std::string label;
    PropertyMap registry;
    std::optional<int> expected;
  };
  const auto capacities = [](Property maximum, Property design) {
    return PropertyMap{{"AppleRawMaxCapacity", std::move(maximum)},
                       {"DesignCapacity", std::move(design)}};
  };
  for (const auto& [label, registry, expected] : {
           Case{"rounded up", capacities(5000, 6000), 83},
           Case{"half a percent", capacities(1, 200), 1},
           Case{"halves go up, also from an even number", capacities(5, 8), 63},  // 62.5
           Case{"just below a half", capacities(8249, 10000), 82},
           Case{"better than new", capacities(6300, 6000), 105},
           Case{"dead is measured", capacities(0, 6000), 0},
           Case{"a design of zero", capacities(5000, 0), std::nullopt},
           Case{"a negative design", capacities(5000, -6000), std::nullopt},
           Case{"a negative maximum", capacities(-5000, 6000), std::nullopt},
           Case{"no design", {{"AppleRawMaxCapacity", 5000}}, std::nullopt},
           Case{"no maximum", {{"DesignCapacity", 6000}}, std::nullopt},
           Case{"a design that is text", capacities(5000, "6000"), std::nullopt},
           Case{"a maximum beyond 32 bits", capacities(kLargest, 6000), std::nullopt},
           Case{"more percent than an int holds",
                capacities(std::numeric_limits<std::int32_t>::max(), 1), std::nullopt},
       }) {
    SCOPED_TRACE(label);
    EXPECT_EQ(readRegistry(registry).healthPercent, expected);
  }
}

TEST_F(BatteryReaderTest, WithoutAVoltageEnergyIsUnknownButTelemetryStillTellsPower) {
  const auto reading = readRegistry({{"AppleRawMaxCapacity", 5000},
                                     {"AppleRawCurrentCapacity", 2500},
                                     {"PowerTelemetryData", PropertyMap{{"SystemLoad", 9000}}}});
  EXPECT_EQ(reading.remainingWh, std::nullopt);
  EXPECT_EQ(reading.fullWh, std::nullopt);
  EXPECT_EQ(reading.systemWatts, 9.0);
}

TEST_F(BatteryReaderTest, ACapacityOfZeroOrLessIsNoEnergy) {
  const auto reading = readRegistry(
      {{"Voltage", 12000}, {"AppleRawMaxCapacity", -1}, {"AppleRawCurrentCapacity", 0}});
  EXPECT_EQ(reading.remainingWh, std::nullopt);
  EXPECT_EQ(reading.fullWh, std::nullopt);
}

TEST_F(BatteryReaderTest, TheLargestCapacityAndVoltageDoNotOverflow) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  const auto reading = readRegistry({{"Voltage", kMost}, {"AppleRawCurrentCapacity", kMost}});
  EXPECT_DOUBLE_EQ(reading.remainingWh.value(), 2147483.647 * 2147483.647);
}

TEST_F(BatteryReaderTest, ANegativeCycleCountIsAbsent) {
  EXPECT_EQ(readRegistry({{"CycleCount", -1}}).cycleCount, std::nullopt);
  EXPECT_EQ(readRegistry({{"CycleCount", 0}}).cycleCount, 0);
  EXPECT_EQ(readRegistry({{"CycleCount", kLargest}}).cycleCount, std::nullopt);
}

TEST_F(BatteryReaderTest, ValuesOfOtherTypesLeaveTheirFieldsAbsent) {
  world.batteryRegistry = PropertyMap{{"AppleRawMaxCapacity", PropertyList{}},
                                      {"DesignCapacity", true},
                                      {"AppleRawCurrentCapacity", "2500"},
                                      {"Voltage", PropertyMap{}},
                                      {"CycleCount", Property{}},
                                      {"InstantAmperage", PropertyDate{1}},
                                      {"ExternalConnected", "Yes"},
                                      {"PowerTelemetryData", PropertyList{}}};
  world.powerSources = {description({{"Time to Empty", true},
                                     {"Is Charging", 1},
                                     {"Power Source State", 2},
                                     {"Current Capacity", PropertyList{80}}})};
  EXPECT_EQ(read(), BatteryReading{});
}

}  // namespace
}  // namespace embrix
