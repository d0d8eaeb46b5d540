#include "hosts/linux/temperature_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

using Names = std::vector<std::string>;

class LinuxTemperatureSourceTest : public testing::Test {
 protected:
  void putMonitor(const std::string& folder, const std::string& driver) {
    tree.write("sys/class/hwmon/" + folder + "/name", driver + "\n");
  }
  void putSensor(const std::string& folder, int number, const std::string& label,
                 const std::string& millidegrees) {
    const std::string stem = "sys/class/hwmon/" + folder + "/temp" + std::to_string(number);
    tree.write(stem + "_input", millidegrees + "\n");
    if (!label.empty()) tree.write(stem + "_label", label + "\n");
  }
  void putZone(int number, const std::string& type, const std::string& millidegrees) {
    const std::string zone = "sys/class/thermal/thermal_zone" + std::to_string(number);
    tree.write(zone + "/type", type + "\n");
    tree.write(zone + "/temp", millidegrees + "\n");
  }
  LinuxTemperatureSource source() { return LinuxTemperatureSource(tree.root()); }

  CapturedTree tree;
};

TEST_F(LinuxTemperatureSourceTest, SensorsOnTheDieBearItsMark) {
  struct Case {
    const char* driver;
    const char* label;
    const char* product;
  };
  const Case cases[] = {
      {"coretemp", "Package id 0", "coretemp Package id 0 tdie"},
      {"coretemp", "Core 3", "coretemp Core 3 tdie"},
      {"k10temp", "Tctl", "k10temp Tctl tdie"},
      {"k10temp", "Tccd1", "k10temp Tccd1 tdie"},
      {"zenpower", "Tdie", "zenpower Tdie tdie"},
      {"cpu_thermal", "", "cpu_thermal tdie"},
      {"cpu0_thermal", "", "cpu0_thermal tdie"},
      {"acpitz", "", "acpitz"},
      {"iwlwifi_1", "", "iwlwifi_1"},
      {"amdgpu", "edge", "amdgpu edge"},
      {"nct6798", "CPUTIN", "nct6798 CPUTIN"},
  };
  for (const Case& c : cases) {
    tree.remove("sys");
    putMonitor("hwmon0", c.driver);
    putSensor("hwmon0", 1, c.label, "45000");
    EXPECT_EQ(source().sensors(), Names{c.product});
  }
}

TEST_F(LinuxTemperatureSourceTest, TheControlValueYieldsToTheDie) {
  putMonitor("hwmon2", "k10temp");
  putSensor("hwmon2", 1, "Tctl", "72000");
  putSensor("hwmon2", 2, "Tdie", "45000");
  putSensor("hwmon2", 3, "Tccd1", "44000");
  EXPECT_EQ(source().sensors(), (Names{"k10temp Tctl", "k10temp Tdie tdie", "k10temp Tccd1 tdie"}));
}

TEST_F(LinuxTemperatureSourceTest, DisksAreNotAsked) {
  putMonitor("hwmon0", "nvme");
  putSensor("hwmon0", 1, "Composite", "40000");
  putMonitor("hwmon1", "drivetemp");
  putSensor("hwmon1", 1, "", "35000");
  EXPECT_TRUE(source().sensors().empty());
}

TEST_F(LinuxTemperatureSourceTest, ZonesStandInWhereNoMonitorKnowsTheDie) {
  putMonitor("hwmon0", "acpitz");
  putSensor("hwmon0", 1, "", "30000");
  putZone(0, "acpitz", "30000");
  putZone(1, "x86_pkg_temp", "51000");
  putZone(2, "cpu-0-1-thermal", "52000");
  putZone(10, "soc-thermal", "53000");
  EXPECT_EQ(source().sensors(),
            (Names{"acpitz", "x86_pkg_temp tdie", "cpu-0-1-thermal tdie", "soc-thermal tdie"}));
  EXPECT_EQ(source().read(1), 51.0);
}

TEST_F(LinuxTemperatureSourceTest, ZonesAreLeftOutWhereAMonitorKnowsTheDie) {
  putMonitor("hwmon0", "coretemp");
  putSensor("hwmon0", 1, "Package id 0", "45000");
  putZone(1, "x86_pkg_temp", "51000");
  EXPECT_EQ(source().sensors(), Names{"coretemp Package id 0 tdie"});
}

TEST_F(LinuxTemperatureSourceTest, ReadingsAreThousandthsAsTheSensorSays) {
  struct Case {
    const char* content;
    std::optional<double> expected;
  };
  const Case cases[] = {
      {"45250\n", 45.25},
      {"0\n", 0.0},
      {"-273200\n", -273.2},
      {"4294967\n", 4294.967},
      {"", std::nullopt},
      {"N/A\n", std::nullopt},
      {"99999999999999999999\n", std::nullopt},
  };
  putMonitor("hwmon0", "coretemp");
  putSensor("hwmon0", 1, "", "1");
  auto temperatures = source();
  for (const Case& c : cases) {
    tree.write("sys/class/hwmon/hwmon0/temp1_input", c.content);
    EXPECT_EQ(temperatures.read(0), c.expected) << c.content;
  }
}

TEST_F(LinuxTemperatureSourceTest, ThereIsNoReadingBehindTheLastSensor) {
  putMonitor("hwmon0", "coretemp");
  putSensor("hwmon0", 1, "", "1000");
  auto temperatures = source();
  EXPECT_EQ(temperatures.read(1), std::nullopt);
  EXPECT_EQ(temperatures.read(static_cast<std::size_t>(-1)), std::nullopt);
}

TEST_F(LinuxTemperatureSourceTest, ASensorThatVanishesKeepsItsPlace) {
  putMonitor("hwmon0", "coretemp");
  putSensor("hwmon0", 1, "", "1000");
  putSensor("hwmon0", 2, "", "2000");
  auto temperatures = source();
  tree.remove("sys/class/hwmon/hwmon0/temp1_input");
  EXPECT_EQ(temperatures.sensors().size(), 2u);
  EXPECT_EQ(temperatures.read(0), std::nullopt);
  EXPECT_EQ(temperatures.read(1), 2.0);
}

TEST_F(LinuxTemperatureSourceTest, AMonitorWithoutANameIsStillAMonitor) {
  tree.write("sys/class/hwmon/hwmon0/temp1_input", "33000\n");
  tree.write("sys/class/hwmon/hwmon0/temp2_crit", "100000\n");
  EXPECT_EQ(source().sensors(), Names{""});
  EXPECT_EQ(source().read(0), 33.0);
}

TEST_F(LinuxTemperatureSourceTest, AMachineWithoutSensorsHasNone) {
  EXPECT_TRUE(source().sensors().empty());
  EXPECT_EQ(source().read(0), std::nullopt);
}

}  // namespace
}  // namespace embrix
