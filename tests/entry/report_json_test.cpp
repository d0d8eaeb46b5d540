#include "entry/report_json.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "report_frames.h"

namespace embrix {
namespace {

nlohmann::json parsed(const Frame& frame) {
  return nlohmann::json::parse(reportJSON(frame));
}

TEST(ReportJSONTest, AFrameIsWrittenToTheByte) {
  EXPECT_EQ(reportJSON(wholeFrame()),
            R"({
  "apps" : [
    {
      "cpuPercent" : 182.05,
      "name" : "Xcode",
      "processes" : [
        {
          "cpuPercent" : 98.5,
          "name" : "swift\/frontend",
          "pid" : 501,
          "watts" : 5
        },
        {
          "cpuPercent" : 3.25,
          "name" : "clang",
          "pid" : 504,
          "watts" : 4
        }
      ],
      "watts" : 9.07
    },
    {
      "cpuPercent" : 0,
      "name" : "Idle",
      "processes" : [

      ],
      "watts" : 0
    }
  ],
  "fansRPM" : [
    1201,
    1350
  ],
  "processWatts" : 9.07,
  "systemWatts" : 12.5,
  "temperature" : 61.25,
  "thermalState" : "fair"
}
)");
}

TEST(ReportJSONTest, AnEmptyFrameKeepsEveryKey) {
  EXPECT_EQ(reportJSON(Frame{}),
            R"({
  "apps" : [

  ],
  "fansRPM" : [

  ],
  "processWatts" : 0,
  "systemWatts" : null,
  "temperature" : null,
  "thermalState" : "nominal"
}
)");
}

TEST(ReportJSONTest, WithoutABatteryOrItsFigureSystemWattsIsNull) {
  Frame frame;
  EXPECT_TRUE(parsed(frame)["systemWatts"].is_null());
  frame.battery = BatteryReading{.percent = 80};
  EXPECT_TRUE(parsed(frame)["systemWatts"].is_null());
  frame.battery->systemWatts = 0.0;
  EXPECT_EQ(parsed(frame)["systemWatts"], 0);
}

TEST(ReportJSONTest, AGroupWithoutAProcessWorthALineHasAnEmptyArray) {
  Frame frame;
  frame.groups = {group("Idle", {row(1, "a", 0.00999), row(2, "b", 0)})};
  EXPECT_EQ(parsed(frame)["apps"][0]["processes"], nlohmann::json::array());
}

TEST(ReportJSONTest, OnlyTheFirstFiveRowsOfAGroupAreConsidered) {
  Frame frame;
  frame.groups = {group("App", {row(1, "a", 5), row(2, "b", 0), row(3, "c", 0.01), row(4, "d", 0),
                                row(5, "e", 4), row(6, "f", 3)})};
  const auto processes = parsed(frame)["apps"][0]["processes"];
  ASSERT_EQ(processes.size(), 3U);
  EXPECT_EQ(processes[0]["pid"], 1);
  EXPECT_EQ(processes[1]["pid"], 3);
  EXPECT_EQ(processes[2]["pid"], 5);
}

TEST(ReportJSONTest, FifteenAppsAreShownAndAllAreSummed) {
  Frame frame;
  for (int i = 0; i < 20; ++i) frame.groups.push_back(group("App", {row(i, "a", 1)}));
  EXPECT_EQ(parsed(frame)["apps"].size(), 15U);
  EXPECT_EQ(parsed(frame)["processWatts"], 20);
}

TEST(ReportJSONTest, EveryThermalStateHasItsWord) {
  const std::pair<ThermalState, const char*> rows[] = {{ThermalState::nominal, "nominal"},
                                                       {ThermalState::fair, "fair"},
                                                       {ThermalState::serious, "serious"},
                                                       {ThermalState::critical, "critical"}};
  for (const auto& [state, word] : rows) {
    Frame frame;
    frame.thermalState = state;
    EXPECT_EQ(parsed(frame)["thermalState"], word);
  }
}

TEST(ReportJSONTest, FansAreRoundedToWholeTurnsHalvesAwayFromZero) {
  Frame frame;
  frame.fans = {{1200.5, 0}, {1201.5, 0}, {0.4, 0}, {-0.4, 0}};
  EXPECT_EQ(parsed(frame)["fansRPM"], nlohmann::json({1201, 1202, 0, 0}));
}

TEST(ReportJSONTest, AnyNumberWithoutAFormMakesItAnEmptyLine) {
  const double nan = std::nan("");
  Frame frames[5];
  frames[0].temperature = nan;
  frames[1].battery = BatteryReading{.systemWatts = nan};
  frames[2].fans = {{nan, 0}};
  frames[3].groups = {group("App", {row(1, "a", nan)})};
  frames[4].groups = {group("App", {row(1, "a", 1)})};
  frames[4].groups[0].processes[0].cpuPercent = INFINITY;
  for (const Frame& frame : frames) EXPECT_EQ(reportJSON(frame), "\n");
}

TEST(ReportJSONTest, HostileNamesStayInsideTheirStrings) {
  const std::string hostile("\"}],\n\x1b[2J\xff\0\xc2\x9b/", 15);
  Frame frame;
  frame.groups = {group(hostile, {row(-1, hostile, 1)})};
  const std::string json = reportJSON(frame);
  EXPECT_EQ(json.find('\x1b'), std::string::npos);
  EXPECT_EQ(json.find("\xc2\x9b"), std::string::npos);
  EXPECT_EQ(parsed(frame)["apps"].size(), 1U);
  EXPECT_EQ(parsed(frame)["apps"][0]["name"], parsed(frame)["apps"][0]["processes"][0]["name"]);
}

}  // namespace
}  // namespace embrix
