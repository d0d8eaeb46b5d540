#include "hosts/linux/battery_source.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "captured_tree.h"

namespace embrix {
namespace {

using Files = std::map<std::string, std::string>;

// A battery that tells charge and current, drained at one ampere.
const Files kChargeBattery = {
    {"type", "Battery"},        {"status", "Discharging"},
    {"present", "1"},           {"capacity", "60"},
    {"cycle_count", "187"},     {"voltage_now", "12000000"},
    {"charge_full", "4000000"}, {"charge_full_design", "5000000"},
    {"charge_now", "2400000"},  {"current_now", "1000000"},
};
// The same one, told in energy and power.
const Files kEnergyBattery = {
    {"type", "Battery"},
    {"status", "Discharging"},
    {"present", "1"},
    {"capacity", "60"},
    {"cycle_count", "187"},
    {"voltage_now", "12000000"},
    {"energy_full", "48000000"},
    {"energy_full_design", "60000000"},
    {"energy_now", "28800000"},
    {"power_now", "12000000"},
};

class LinuxBatterySourceTest : public testing::Test {
 protected:
  void put(const std::string& name, const Files& files, const Files& changes = {}) {
    Files all = changes;
    all.insert(files.begin(), files.end());
    for (const auto& [file, content] : all) {
      // An empty content stands for a file that is not there.
      if (!content.empty()) tree.write(folder + name + "/" + file, content + "\n");
    }
  }
  void putPlug(const std::string& online, const std::string& type = "Mains") {
    put("AC", {{"type", type}, {"online", online}});
  }
  PropertyMap registry() {
    return LinuxBatterySource(tree.root()).registry().value_or(PropertyMap{});
  }
  PropertyMap description() {
    const auto sources = LinuxBatterySource(tree.root()).powerSources();
    return sources.empty() ? PropertyMap{} : sources.front();
  }

  const std::string folder = "sys/class/power_supply/";
  CapturedTree tree;
};

TEST_F(LinuxBatterySourceTest, ChargeAndEnergyTellTheSame) {
  const PropertyMap expected = {
      {"AppleRawMaxCapacity", 4000},     {"DesignCapacity", 5000},
      {"AppleRawCurrentCapacity", 2400}, {"Voltage", 12000},
      {"InstantAmperage", -1000},        {"CycleCount", 187},
      {"ExternalConnected", false},
  };
  for (const Files& files : {kChargeBattery, kEnergyBattery}) {
    tree.remove("sys");
    put("BAT0", files);
    putPlug("0");
    EXPECT_EQ(registry(), expected);
  }
}

TEST_F(LinuxBatterySourceTest, TheDescriptionIsThatOfAnInternalBattery) {
  put("BAT0", kChargeBattery);
  putPlug("0");
  EXPECT_EQ(description(), (PropertyMap{{"Type", "InternalBattery"},
                                        {"Is Charging", false},
                                        {"Power Source State", "Battery Power"},
                                        {"Current Capacity", 60},
                                        {"Time to Empty", 144}}));
}

TEST_F(LinuxBatterySourceTest, TheStatusGivesTheCurrentItsSign) {
  struct Case {
    const char* label;
    const char* status;
    const char* current;
    int expected;
    bool isCharging;
  };
  const Case cases[] = {
      {"draining, driver without signs", "Discharging", "1500000", -1500, false},
      {"draining, driver with signs", "Discharging", "-1500000", -1500, false},
      {"charging", "Charging", "1500000", 1500, true},
      {"charging, driver the other way round", "Charging", "-1500000", 1500, true},
      {"full, at rest", "Full", "0", 0, false},
      {"held at a threshold, driver with signs", "Not charging", "-20000", -20, false},
      {"unknown", "Unknown", "20000", 20, false},
      {"a status of its own invention", "Floating", "20000", 20, false},
      {"no status", "", "20000", 20, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    put("BAT0", kChargeBattery, {{"status", c.status}, {"current_now", c.current}});
    EXPECT_EQ(integerAt(registry(), "InstantAmperage"), c.expected);
    EXPECT_EQ(booleanAt(description(), "Is Charging"), c.isCharging);
  }
}

TEST_F(LinuxBatterySourceTest, EachMissingFileLeavesItsOwnFieldsAbsent) {
  struct Case {
    const char* file;
    std::vector<const char*> registryKeys;
    std::vector<const char*> descriptionKeys;
  };
  const Case cases[] = {
      {"capacity", {}, {"Current Capacity"}},
      {"cycle_count", {"CycleCount"}, {}},
      {"voltage_now", {"Voltage"}, {}},
      {"charge_full", {"AppleRawMaxCapacity"}, {}},
      {"charge_full_design", {"DesignCapacity"}, {}},
      {"charge_now", {"AppleRawCurrentCapacity"}, {"Time to Empty"}},
      {"current_now", {"InstantAmperage"}, {"Time to Empty"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    tree.remove("sys");
    put("BAT0", kChargeBattery);
    putPlug("0");
    PropertyMap expectedRegistry = registry();
    PropertyMap expectedDescription = description();
    for (const char* key : c.registryKeys) ASSERT_EQ(expectedRegistry.erase(key), 1u);
    for (const char* key : c.descriptionKeys) ASSERT_EQ(expectedDescription.erase(key), 1u);
    // Nonsense reads as a missing file does.
    for (const char* content : {"", "text", "99999999999999999999", "-9223372036854775808"}) {
      tree.remove("sys");
      put("BAT0", kChargeBattery, {{c.file, content}});
      putPlug("0");
      EXPECT_EQ(registry(), expectedRegistry) << content;
      EXPECT_EQ(description(), expectedDescription) << content;
    }
  }
}

TEST_F(LinuxBatterySourceTest, NumbersOutsideTheirRangeAreAbsent) {
  struct Case {
    const char* label;
    const char* file;
    const char* content;
    const char* key;
  };
  const Case cases[] = {
      {"a percentage above 100", "capacity", "101", "Current Capacity"},
      {"a percentage below 0", "capacity", "-1", "Current Capacity"},
      {"a count that the battery does not keep", "cycle_count", "0", "CycleCount"},
      {"a negative count", "cycle_count", "-3", "CycleCount"},
      {"no voltage", "voltage_now", "0", "Voltage"},
      {"a negative voltage", "voltage_now", "-12000000", "Voltage"},
      {"a charge of a power station", "charge_full", "1000000001", "AppleRawMaxCapacity"},
      {"a negative charge", "charge_now", "-1", "AppleRawCurrentCapacity"},
      {"a current that melts copper", "current_now", "2000000000", "InstantAmperage"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    put("BAT0", kChargeBattery);
    EXPECT_EQ(registry().count(c.key) + description().count(c.key), 1u);
    tree.remove("sys");
    put("BAT0", kChargeBattery, {{c.file, c.content}});
    EXPECT_EQ(registry().count(c.key) + description().count(c.key), 0u);
  }
}

TEST_F(LinuxBatterySourceTest, EnergyNeedsAVoltageToBecomeCharge) {
  put("BAT0", kEnergyBattery, {{"voltage_now", ""}});
  EXPECT_EQ(registry(), (PropertyMap{{"CycleCount", 187}, {"ExternalConnected", false}}));
}

TEST_F(LinuxBatterySourceTest, PlugsTellWhetherPowerComesFromOutside) {
  struct Case {
    const char* label;
    std::map<std::string, Files> supplies;
    std::optional<bool> expected;
  };
  const Case cases[] = {
      {"mains on", {{"AC", {{"type", "Mains"}, {"online", "1"}}}}, true},
      {"mains off", {{"AC", {{"type", "Mains"}, {"online", "0"}}}}, false},
      {"USB with an agreed voltage", {{"usb", {{"type", "USB"}, {"online", "2"}}}}, true},
      {"an older kernel's kind of USB", {{"usb", {{"type", "USB_PD"}, {"online", "1"}}}}, true},
      {"one of two on",
       {{"A", {{"type", "USB"}, {"online", "0"}}}, {"B", {{"type", "USB"}, {"online", "1"}}}},
       true},
      {"a plug of a tablet's pen",
       {{"pen", {{"type", "USB"}, {"scope", "Device"}, {"online", "1"}}}},
       std::nullopt},
      {"an uninterruptible supply", {{"ups", {{"type", "UPS"}, {"online", "1"}}}}, std::nullopt},
      {"a plug that says nothing", {{"AC", {{"type", "Mains"}}}}, std::nullopt},
      {"a plug that says nonsense", {{"AC", {{"type", "Mains"}, {"online", "yes"}}}}, std::nullopt},
      {"no plug", {}, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    put("BAT0", kChargeBattery, {{"status", "Full"}});
    for (const auto& [name, files] : c.supplies) put(name, files);
    EXPECT_EQ(booleanAt(registry(), "ExternalConnected"), c.expected);
    std::optional<std::string> state;
    if (c.expected) state = *c.expected ? "AC Power" : "Battery Power";
    EXPECT_EQ(textAt(description(), "Power Source State"), state);
  }
}

TEST_F(LinuxBatterySourceTest, WithoutAPlugTheBatteryItselfTells) {
  put("BAT0", kChargeBattery, {{"status", "Charging"}});
  EXPECT_EQ(booleanAt(registry(), "ExternalConnected"), true);
  tree.remove("sys");
  put("BAT0", kChargeBattery, {{"status", "Discharging"}});
  EXPECT_EQ(booleanAt(registry(), "ExternalConnected"), false);
}

TEST_F(LinuxBatterySourceTest, TimeToEmpty) {
  struct Case {
    const char* label;
    Files changes;
    std::optional<int> minutes;
  };
  const Case cases[] = {
      {"by the present current", {}, 144},
      {"by the average current", {{"current_avg", "2000000"}}, 72},
      {"by the gauge", {{"time_to_empty_now", "3659"}}, 60},
      {"a gauge that does not know", {{"time_to_empty_now", "0"}}, 144},
      {"a gauge gone wild", {{"time_to_empty_now", "99999999"}}, 144},
      {"a gauge below nothing", {{"time_to_empty_now", "-60"}}, 144},
      {"not while charging", {{"status", "Charging"}}, std::nullopt},
      {"not while full", {{"status", "Full"}}, std::nullopt},
      {"not while the current has not settled", {{"current_now", "9000"}}, std::nullopt},
      {"an empty battery", {{"charge_now", "0"}}, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    put("BAT0", kChargeBattery, c.changes);
    EXPECT_EQ(integerAt(description(), "Time to Empty"), c.minutes);
  }
}

TEST_F(LinuxBatterySourceTest, TwoBatteriesAreOneWithTheSumOfTheirEnergies) {
  // 48 and 24 Wh at 12 and 8 V; 12 W from the first, nothing from the second.
  put("BAT0", kChargeBattery);
  put("BAT1", kEnergyBattery,
      {{"status", "Not charging"},
       {"voltage_now", "8000000"},
       {"energy_full", "24000000"},
       {"energy_full_design", "30000000"},
       {"energy_now", "24000000"},
       {"power_now", "0"},
       {"cycle_count", "301"}});
  putPlug("0");
  EXPECT_EQ(registry(), (PropertyMap{{"AppleRawMaxCapacity", 6000},
                                     {"DesignCapacity", 7500},
                                     {"AppleRawCurrentCapacity", 4400},
                                     {"Voltage", 12000},
                                     {"InstantAmperage", -1000},
                                     {"CycleCount", 301},
                                     {"ExternalConnected", false}}));
  EXPECT_EQ(description(), (PropertyMap{{"Type", "InternalBattery"},
                                        {"Is Charging", false},
                                        {"Power Source State", "Battery Power"},
                                        {"Current Capacity", 73},
                                        {"Time to Empty", 264}}));
}

TEST_F(LinuxBatterySourceTest, WhatOneOfTwoBatteriesLacksIsAbsentForBoth) {
  put("BAT0", kChargeBattery);
  put("BAT1", kChargeBattery, {{"charge_full", ""}, {"cycle_count", ""}});
  const PropertyMap map = registry();
  EXPECT_EQ(map.count("AppleRawMaxCapacity"), 0u);
  EXPECT_EQ(integerAt(map, "AppleRawCurrentCapacity"), 4800);
  EXPECT_EQ(integerAt(map, "CycleCount"), 187);
  EXPECT_EQ(description().count("Current Capacity"), 0u);
}

TEST_F(LinuxBatterySourceTest, AnEmptyBayIsNoBattery) {
  put("BAT0", kChargeBattery);
  put("BAT1", kChargeBattery, {{"present", "0"}});
  EXPECT_EQ(integerAt(registry(), "AppleRawMaxCapacity"), 4000);
  tree.remove("sys");
  put("BAT0", kChargeBattery, {{"present", "0"}});
  LinuxBatterySource source(tree.root());
  EXPECT_TRUE(source.hasService());
  EXPECT_EQ(source.registry(), std::nullopt);
  EXPECT_TRUE(source.powerSources().empty());
}

TEST_F(LinuxBatterySourceTest, BatteriesOfOtherThingsAreNotTheMachines) {
  put("hidpp_battery_0", kChargeBattery, {{"scope", "Device"}});
  put("ups", kChargeBattery, {{"type", "UPS"}});
  put("strange", {{"type", ""}, {"capacity", "50"}});
  putPlug("1");
  LinuxBatterySource source(tree.root());
  EXPECT_FALSE(source.hasService());
  EXPECT_EQ(source.registry(), std::nullopt);
  EXPECT_TRUE(source.powerSources().empty());
}

TEST_F(LinuxBatterySourceTest, AMachineWithoutTheFolderHasNoService) {
  LinuxBatterySource source(tree.root());
  EXPECT_FALSE(source.hasService());
  EXPECT_EQ(source.registry(), std::nullopt);
  EXPECT_TRUE(source.powerSources().empty());
}

TEST_F(LinuxBatterySourceTest, BothHalvesTellOfOneReading) {
  put("BAT0", kChargeBattery);
  LinuxBatterySource source(tree.root());
  ASSERT_TRUE(source.registry());
  tree.write(folder + "BAT0/capacity", "59\n");
  EXPECT_EQ(integerAt(source.powerSources().front(), "Current Capacity"), 60);
  // Asked on its own, the description is of now.
  EXPECT_EQ(integerAt(source.powerSources().front(), "Current Capacity"), 59);
}

TEST_F(LinuxBatterySourceTest, APlugThatComesLaterIsFoundInTime) {
  put("BAT0", kChargeBattery);
  LinuxBatterySource source(tree.root());
  EXPECT_EQ(booleanAt(*source.registry(), "ExternalConnected"), false);
  putPlug("1");
  for (int i = 0; i < 40; ++i) source.registry();
  EXPECT_EQ(booleanAt(*source.registry(), "ExternalConnected"), true);
}

TEST_F(LinuxBatterySourceTest, ABatteryThatVanishesLeavesNothing) {
  put("BAT0", kChargeBattery);
  LinuxBatterySource source(tree.root());
  ASSERT_TRUE(source.registry());
  for (const auto& [file, content] : kChargeBattery) tree.write(folder + "BAT0/" + file, "");
  EXPECT_EQ(source.registry()->size(), 0u);
  tree.remove("sys");
  for (int i = 0; i < 40; ++i) source.registry();
  EXPECT_EQ(source.registry(), std::nullopt);
  EXPECT_TRUE(source.hasService());
}

}  // namespace
}  // namespace embrix
