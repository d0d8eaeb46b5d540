#include "sampling/thermal_reader.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"

namespace embrix {
namespace {

class ThermalReaderTest : public testing::Test {
 protected:
  void add(std::string name, std::optional<double> celsius) {
    world.sensors.push_back({.name = std::move(name), .celsius = celsius});
  }

  // Sensors "tdie0", "tdie1", ... of these temperatures.
  void addDies(const std::vector<std::optional<double>>& temperatures) {
    for (const auto& celsius : temperatures) {
      add("PMU tdie" + std::to_string(world.sensors.size()), celsius);
    }
  }

  // The places of the sensors that a reading asked, in order.
  std::vector<std::size_t> asked(ThermalReader& reader) {
    world.log.clear();
    reader.cpuTemperature();
    std::vector<std::size_t> places;
    for (const auto& call : world.log) {
      places.push_back(std::stoul(call.substr(std::string("temperatures.read ").size())));
    }
    return places;
  }

  ScriptedHost world;
  Host host = world.host();
};

using Places = std::vector<std::size_t>;

TEST_F(ThermalReaderTest, WithoutSensorsThereIsNoTemperature) {
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), std::nullopt);
}

TEST_F(ThermalReaderTest, TheHottestDieCounts) {
  add("PMU tdie1", 41);
  add("PMU2 tdie3", 52.5);
  add("gas gauge battery", 90);
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), 52.5);
}

TEST_F(ThermalReaderTest, WithoutADieSensorAllSensorsCount) {
  add("", 30);
  add("PMU TDIE1", 35);
  add("NAND CH0 temp", 40);
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), 40);
}

TEST_F(ThermalReaderTest, TheFirstReadingAsksAllAndLaterOnesTwoAtATimeRoundAndRound) {
  addDies({10, 20, 30, 40, 50});
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(asked(reader), (Places{0, 1, 2, 3, 4}));
  EXPECT_EQ(asked(reader), (Places{0, 1}));
  EXPECT_EQ(asked(reader), (Places{2, 3}));
  EXPECT_EQ(asked(reader), (Places{4, 0}));
  EXPECT_EQ(asked(reader), (Places{1, 2}));
}

TEST_F(ThermalReaderTest, ASingleSensorIsAskedOnce) {
  addDies({10});
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(asked(reader), Places{0});
  EXPECT_EQ(asked(reader), Places{0});
}

TEST_F(ThermalReaderTest, PlacesAreThoseOfTheSourcesList) {
  add("PMU tdev1", 1);
  add("PMU tdie1", 2);
  add("PMU tcal", 3);
  add("PMU tdie2", 4);
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(asked(reader), (Places{1, 3}));
}

TEST_F(ThermalReaderTest, SensorsNotAskedKeepTheirLastWord) {
  addDies({10, 20, 30, 40, 50});
  ThermalReader reader(*host.temperatures);
  reader.cpuTemperature();
  for (auto& sensor : world.sensors) sensor.celsius = 5;
  EXPECT_EQ(reader.cpuTemperature(), 50);  // asks 0, 1
  EXPECT_EQ(reader.cpuTemperature(), 50);  // asks 2, 3
  EXPECT_EQ(reader.cpuTemperature(), 5);   // asks 4, 0
}

TEST_F(ThermalReaderTest, ReadingsOutsideZeroTo150AreNone) {
  struct Case {
    std::string label;
    double celsius;
    bool isValid;
  };
  for (const auto& [label, celsius, isValid] : {
           Case{"zero", 0, true},
           Case{"the upper end", 150, true},
           Case{"above", 150.001, false},
           Case{"far above", 200, false},
           Case{"below", -0.001, false},
           Case{"a sensor not wired up", -22.1, false},
           Case{"no number", std::nan(""), false},
           Case{"infinite", std::numeric_limits<double>::infinity(), false},
       }) {
    SCOPED_TRACE(label);
    world.sensors = {{.name = "tdie", .celsius = celsius}};
    ThermalReader reader(*host.temperatures);
    EXPECT_EQ(reader.cpuTemperature(), isValid ? std::optional(celsius) : std::nullopt);
  }
}

TEST_F(ThermalReaderTest, ASensorThatAnswersNonsenseLosesItsLastWordAndAllAreAskedAgain) {
  addDies({60, 50, 40, 30});
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), 60);
  world.sensors[0].celsius = 200;
  EXPECT_EQ(reader.cpuTemperature(), 50);    // asks 0, 1
  EXPECT_EQ(asked(reader), (Places{2, 3}));  // the cursor is not at the start: two only
  EXPECT_EQ(asked(reader), (Places{0, 1, 2, 3}));
}

TEST_F(ThermalReaderTest, ASensorWithoutAnEventKeepsItsLastWord) {
  addDies({60, 50});
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), 60);
  world.sensors[0].celsius = std::nullopt;
  EXPECT_EQ(reader.cpuTemperature(), 60);
}

TEST_F(ThermalReaderTest, WhileNoSensorAnswersThereIsNoTemperature) {
  addDies({std::nullopt, std::nullopt, std::nullopt});
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), std::nullopt);
  EXPECT_EQ(asked(reader), (Places{0, 1, 2}));  // all entries are still absent
}

// Rows of temperature and name, or of name and temperature, with a tab between.
std::vector<ScriptedSensor> sensorsOf(std::string_view text, bool nameFirst) {
  std::vector<ScriptedSensor> sensors;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const auto tab = line.find('\t');
    if (line.starts_with('#') || tab == std::string_view::npos) continue;
    const std::string first(line.substr(0, tab));
    const std::string second(line.substr(tab + 1));
    sensors.push_back(
        {.name = nameFirst ? first : second, .celsius = std::stod(nameFirst ? second : first)});
  }
  return sensors;
}

// Of the die sensors, tdie1 of the second controller is hottest, at 43.6. The calibration sensor
// says 51.9 all day and is no die; neither is one called "SOC Die Temp Sensor".
TEST_F(ThermalReaderTest, SensorsOfARealM1) {
  world.sensors = sensorsOf(
      captureOr("04_sensors_smc/hid_m1air.tsv",
                "# remark\nPMGR SOC Die Temp Sensor1\t37.0\nPMU tcal\t51.9\nPMU tdev1\t-21.7\n"
                "PMU tdie1\t42.9\nPMU tdie8\t41.0\nPMU2 tdie1\t43.6\n"),
      true);
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), 43.6);
}

// tdie8 is hottest, at 35.09; tcal stands twice at 51.82, and tdev1 at -22.15.
TEST_F(ThermalReaderTest, SensorsOfARealM4) {
  world.sensors = sensorsOf(
      captureOr("04_sensors_smc/hid_m4_helper_lines.tsv",
                "31.97\tPMU2 tdie5\n32.61\tPMU tdie10\n51.82\tPMU2 tcal\n-22.15\tPMU tdev1\n"
                "35.09\tPMU tdie8\n51.82\tPMU tcal\n"),
      false);
  ThermalReader reader(*host.temperatures);
  EXPECT_EQ(reader.cpuTemperature(), 35.09);
}

}  // namespace
}  // namespace embrix
