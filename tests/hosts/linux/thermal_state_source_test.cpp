#include "hosts/linux/thermal_state_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

struct TripPoint {
  const char* type;
  const char* temperature;
};

class LinuxThermalStateSourceTest : public testing::Test {
 protected:
  void putZone(int number, const std::string& temperature, const std::vector<TripPoint>& points) {
    zone(number, temperature);
    int i = 0;
    for (const TripPoint& point : points) {
      const std::string stem = folder(number) + "/trip_point_" + std::to_string(i++);
      tree.write(stem + "_type", std::string(point.type) + "\n");
      tree.write(stem + "_temp", std::string(point.temperature) + "\n");
    }
  }
  void zone(int number, const std::string& temperature) {
    tree.write(folder(number) + "/temp", temperature + "\n");
  }
  void putCounter(int cpu, const std::string& file, const std::string& count,
                  const std::string& package = "0") {
    const std::string path = "sys/devices/system/cpu/cpu" + std::to_string(cpu);
    tree.write(path + "/topology/physical_package_id", package + "\n");
    tree.write(path + "/thermal_throttle/" + file, count + "\n");
  }
  static std::string folder(int number) {
    return "sys/class/thermal/thermal_zone" + std::to_string(number);
  }
  LinuxThermalStateSource source() { return LinuxThermalStateSource(tree.root()); }

  CapturedTree tree;
};

TEST_F(LinuxThermalStateSourceTest, TheHighestTripPointReachedDecides) {
  const std::vector<TripPoint> points = {
      {"active", "50000"}, {"passive", "80000"}, {"hot", "95000"}, {"critical", "105000"}};
  struct Case {
    const char* temperature;
    ThermalState expected;
  };
  const Case cases[] = {
      {"45000", ThermalState::nominal},
      {"60000", ThermalState::nominal},
      {"79999", ThermalState::nominal},
      {"80000", ThermalState::fair},
      {"94999", ThermalState::fair},
      {"95000", ThermalState::serious},
      {"105000", ThermalState::critical},
      {"-273200", ThermalState::nominal},
      {"", ThermalState::nominal},
      {"hot", ThermalState::nominal},
      {"9223372036854775807", ThermalState::critical},
      {"99999999999999999999", ThermalState::nominal},
  };
  for (const Case& c : cases) {
    putZone(0, c.temperature, points);
    EXPECT_EQ(source().read(), c.expected) << c.temperature;
  }
}

TEST_F(LinuxThermalStateSourceTest, TripPointsThatAreNotUsedCountForNothing) {
  for (const char* unused : {"0", "-274000", "", "none", "99999999999999999999"}) {
    putZone(0, "90000", {{"passive", unused}, {"hot", unused}, {"critical", unused}});
    EXPECT_EQ(source().read(), ThermalState::nominal) << unused;
  }
  putZone(0, "90000", {{"something new", "10000"}});
  EXPECT_EQ(source().read(), ThermalState::nominal);
}

TEST_F(LinuxThermalStateSourceTest, OfTwoPassivePointsTheLowerCounts) {
  putZone(0, "75000", {{"passive", "90000"}, {"passive", "70000"}});
  EXPECT_EQ(source().read(), ThermalState::fair);
}

TEST_F(LinuxThermalStateSourceTest, TheWorstZoneDecides) {
  putZone(0, "40000", {{"passive", "80000"}});
  putZone(1, "99000", {{"hot", "95000"}});
  putZone(2, "85000", {{"passive", "80000"}});
  EXPECT_EQ(source().read(), ThermalState::serious);
}

TEST_F(LinuxThermalStateSourceTest, LaterReadsAskOneZoneInTurn) {
  putZone(0, "40000", {{"passive", "80000"}});
  putZone(1, "40000", {{"passive", "80000"}});
  auto state = source();
  EXPECT_EQ(state.read(), ThermalState::nominal);
  zone(0, "90000");
  zone(1, "90000");
  EXPECT_EQ(state.read(), ThermalState::fair);  // zone 0
  zone(0, "40000");
  EXPECT_EQ(state.read(), ThermalState::fair);  // zone 1; zone 0 as it was
  zone(1, "40000");
  EXPECT_EQ(state.read(), ThermalState::fair);     // zone 0; zone 1 as it was
  EXPECT_EQ(state.read(), ThermalState::nominal);  // zone 1
}

TEST_F(LinuxThermalStateSourceTest, AThrottleCounterThatRisesIsFair) {
  putCounter(0, "package_throttle_count", "7");
  auto state = source();
  EXPECT_EQ(state.read(), ThermalState::nominal);
  EXPECT_EQ(state.read(), ThermalState::nominal);
  putCounter(0, "package_throttle_count", "9");
  EXPECT_EQ(state.read(), ThermalState::fair);
  EXPECT_EQ(state.read(), ThermalState::nominal);
}

TEST_F(LinuxThermalStateSourceTest, ACounterThatFallsOrVanishesTellsNothing) {
  putCounter(0, "package_throttle_count", "7");
  auto state = source();
  state.read();
  for (const char* content : {"3", "", "many", "18446744073709551615", "0"}) {
    putCounter(0, "package_throttle_count", content);
    EXPECT_EQ(state.read(), ThermalState::nominal) << content;
  }
}

TEST_F(LinuxThermalStateSourceTest, EachPackageHasOneCounter) {
  putCounter(0, "core_throttle_count", "0", "0");  // no counter of its package
  putCounter(1, "package_throttle_count", "0", "0");
  putCounter(2, "package_throttle_count", "0", "1");
  putCounter(2, "core_throttle_count", "0", "1");
  auto state = source();
  state.read();
  putCounter(1, "package_throttle_count", "5", "0");  // package 0 is told by its first core
  putCounter(2, "core_throttle_count", "5", "1");     // package 1 by its own counter
  EXPECT_EQ(state.read(), ThermalState::nominal);
  putCounter(0, "core_throttle_count", "1", "0");
  EXPECT_EQ(state.read(), ThermalState::fair);
  putCounter(2, "package_throttle_count", "1", "1");
  EXPECT_EQ(state.read(), ThermalState::fair);
}

TEST_F(LinuxThermalStateSourceTest, AMachineThatTellsNothingIsNominal) {
  auto state = source();
  EXPECT_EQ(state.read(), ThermalState::nominal);
  EXPECT_EQ(state.read(), ThermalState::nominal);
}

}  // namespace
}  // namespace embrix
