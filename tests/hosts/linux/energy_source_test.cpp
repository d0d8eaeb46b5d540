#include "hosts/linux/energy_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

class LinuxEnergySourceTest : public testing::Test {
 protected:
  void put(const std::string& zone, const std::string& name, const std::string& counter,
           const std::string& range = "262143328850\n") {
    tree.write("sys/class/powercap/" + zone + "/name", name + "\n");
    tree.write("sys/class/powercap/" + zone + "/energy_uj", counter + "\n");
    tree.write("sys/class/powercap/" + zone + "/max_energy_range_uj", range);
  }
  void set(const std::string& zone, const std::string& counter) {
    tree.write("sys/class/powercap/" + zone + "/energy_uj", counter + "\n");
  }
  LinuxEnergySource source() { return LinuxEnergySource(tree.root()); }

  CapturedTree tree;
};

using Channels = std::vector<EnergyChannel>;

TEST_F(LinuxEnergySourceTest, ThePackageWithoutItsGraphicsIsTheCPU) {
  put("intel-rapl:0", "package-0", "1000");
  put("intel-rapl:0:0", "core", "500");
  put("intel-rapl:0:1", "uncore", "100");
  put("intel-rapl:0:2", "dram", "40");
  auto energy = source();
  ASSERT_TRUE(energy.sample());
  set("intel-rapl:0", "9000");
  set("intel-rapl:0:0", "5500");
  set("intel-rapl:0:1", "1100");
  set("intel-rapl:0:2", "340");
  ASSERT_TRUE(energy.sample());
  const auto interval = energy.interval();
  ASSERT_TRUE(interval);
  EXPECT_EQ(
      interval->channels,
      (Channels{{"CPU Energy", "uJ", 7000}, {"GPU Energy", "uJ", 1000}, {"DRAM", "uJ", 300}}));
  EXPECT_EQ(interval->seconds, std::nullopt);
}

TEST_F(LinuxEnergySourceTest, OnlyThePresentZonesMakeChannels) {
  struct Case {
    const char* label;
    const char* zone;
    const char* name;
    Channels expected;
  };
  const Case cases[] = {
      {"package alone", "intel-rapl:0", "package-0", {{"CPU Energy", "uJ", 8}}},
      {"a die of a package", "intel-rapl:0", "package-0-die-1", {{"CPU Energy", "uJ", 8}}},
      {"cores alone", "intel-rapl:0:0", "core", {{"CPU Energy", "uJ", 8}}},
      {"graphics alone", "intel-rapl:0:1", "uncore", {{"GPU Energy", "uJ", 8}}},
      {"memory alone", "intel-rapl:0:2", "dram", {{"DRAM", "uJ", 8}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    put(c.zone, c.name, "2");
    auto energy = source();
    ASSERT_TRUE(energy.sample());
    set(c.zone, "10");
    ASSERT_TRUE(energy.sample());
    EXPECT_EQ(energy.interval()->channels, c.expected);
  }
}

TEST_F(LinuxEnergySourceTest, PackagesSum) {
  put("intel-rapl:0", "package-0", "10");
  put("intel-rapl:1", "package-1", "20");
  auto energy = source();
  energy.sample();
  set("intel-rapl:0", "15");
  set("intel-rapl:1", "27");
  energy.sample();
  EXPECT_EQ(energy.interval()->channels, (Channels{{"CPU Energy", "uJ", 12}}));
}

TEST_F(LinuxEnergySourceTest, TotalsAndSecondCountsAreLeftOut) {
  put("intel-rapl:1", "psys", "10");
  put("intel-rapl-mmio:0", "package-0", "10");
  put("dtpm:0", "package-0", "10");
  put("intel-rapl:2", "something new", "10");
  EXPECT_FALSE(source().sample());
}

TEST_F(LinuxEnergySourceTest, ThereIsNoIntervalBeforeTwoSamples) {
  put("intel-rapl:0", "package-0", "10");
  auto energy = source();
  EXPECT_EQ(energy.interval(), std::nullopt);
  ASSERT_TRUE(energy.sample());
  EXPECT_EQ(energy.interval(), std::nullopt);
  ASSERT_TRUE(energy.sample());
  EXPECT_EQ(energy.interval()->channels, (Channels{{"CPU Energy", "uJ", 0}}));
}

TEST_F(LinuxEnergySourceTest, ACounterThatBeginsAgain) {
  struct Case {
    const char* label;
    const char* before;
    const char* after;
    const char* range;
    std::optional<std::int64_t> expected;
  };
  const Case cases[] = {
      {"at the end of its range", "999990", "15", "1000000", 25},
      {"exactly at the end", "1000000", "0", "1000000", 0},
      {"long before the end, as after a deep sleep", "300000", "10", "1000000", std::nullopt},
      {"without a known range", "999990", "15", "", std::nullopt},
      {"with a range of text", "999990", "15", "lots", std::nullopt},
      {"with a negative range", "999990", "15", "-1", std::nullopt},
      {"beyond its range", "2000000", "15", "1000000", std::nullopt},
      {"a leap no machine makes", "0", "9223372036854775807", "9223372036854775807", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    put("intel-rapl:0", "package-0", c.before, c.range);
    auto energy = source();
    ASSERT_TRUE(energy.sample());
    set("intel-rapl:0", c.after);
    ASSERT_TRUE(energy.sample());
    const auto interval = energy.interval();
    ASSERT_EQ(interval.has_value(), c.expected.has_value());
    if (interval) {
      EXPECT_EQ(interval->channels, (Channels{{"CPU Energy", "uJ", *c.expected}}));
    }
  }
}

TEST_F(LinuxEnergySourceTest, MoreGraphicsThanPackageIsNoNegativeCPU) {
  put("intel-rapl:0", "package-0", "0");
  put("intel-rapl:0:1", "uncore", "0");
  auto energy = source();
  energy.sample();
  set("intel-rapl:0", "5");
  set("intel-rapl:0:1", "9");
  energy.sample();
  EXPECT_EQ(energy.interval()->channels,
            (Channels{{"CPU Energy", "uJ", 0}, {"GPU Energy", "uJ", 9}}));
}

TEST_F(LinuxEnergySourceTest, AFailedSampleLeavesTheOthersStanding) {
  put("intel-rapl:0", "package-0", "10");
  put("intel-rapl:0:2", "dram", "10");
  auto energy = source();
  energy.sample();
  set("intel-rapl:0", "20");
  set("intel-rapl:0:2", "11");
  energy.sample();
  const auto before = energy.interval();
  for (const char* nonsense : {"", "none", "-5", "18446744073709551616"}) {
    set("intel-rapl:0", "30");
    set("intel-rapl:0:2", nonsense);
    EXPECT_FALSE(energy.sample()) << nonsense;
    EXPECT_EQ(energy.interval(), before) << nonsense;
  }
  set("intel-rapl:0:2", "12");
  ASSERT_TRUE(energy.sample());
  EXPECT_EQ(energy.interval()->channels, (Channels{{"CPU Energy", "uJ", 10}, {"DRAM", "uJ", 1}}));
}

TEST_F(LinuxEnergySourceTest, ZonesThatCannotBeReadAtTheStartAreLeftOut) {
  put("intel-rapl:0", "package-0", "10");
  put("intel-rapl:0:2", "dram", "forbidden");
  tree.write("sys/class/powercap/intel-rapl:1/energy_uj", "5");     // without a name
  tree.write("sys/class/powercap/intel-rapl:3/name", "package-1");  // without a counter
  auto energy = source();
  ASSERT_TRUE(energy.sample());
  set("intel-rapl:0", "30");
  ASSERT_TRUE(energy.sample());
  EXPECT_EQ(energy.interval()->channels, (Channels{{"CPU Energy", "uJ", 20}}));
}

TEST_F(LinuxEnergySourceTest, AMachineWithoutCountersHasNoSamples) {
  auto energy = source();
  EXPECT_FALSE(energy.sample());
  EXPECT_FALSE(energy.sample());
  EXPECT_EQ(energy.interval(), std::nullopt);
}

}  // namespace
}  // namespace embrix
