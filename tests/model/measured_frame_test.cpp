#include "model/measured_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "worlds/frames.h"

namespace embrix {
namespace {

constexpr double kNow = 1'750'000'000;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

TEST(MeasuredFrameTest, WhatWasMeasuredStaysAsItIs) {
  Frame frame = frameAt(kNow - 5, {app("Safari", 3), app("Mail", 1e5)});
  frame.battery = onBattery(80);
  frame.battery->systemWatts = -3;
  frame.temperature = 99;
  const Frame before = frame;
  MeasuredFrame::keepOnly(frame, kNow);
  EXPECT_EQ(frame, before);
}

class NoFigure : public testing::TestWithParam<double> {};

TEST_P(NoFigure, IsAbsentWhereItCanBe) {
  Frame frame = frameAt(kNow);
  frame.battery =
      BatteryReading{.systemWatts = GetParam(), .remainingWh = GetParam(), .fullWh = GetParam()};
  frame.temperature = GetParam();
  frame.gpuUtilization = GetParam();
  MeasuredFrame::keepOnly(frame, kNow);
  EXPECT_EQ(frame.battery, BatteryReading{});
  EXPECT_EQ(frame.temperature, std::nullopt);
  EXPECT_EQ(frame.gpuUtilization, std::nullopt);
}

TEST_P(NoFigure, CountsForNothingInARowAndInItsGroup) {
  Frame frame = frameAt(kNow, {group("a", "A", {row(1, "x", 2), row(2, "y", 3)})});
  AppGroup& a = frame.groups[0];
  ProcessRow& bad = a.processes[0];
  bad.watts = bad.cpuPercent = bad.wakeupsPerSecond = bad.gpuWatts = GetParam();
  a.watts = a.cpuPercent = a.wakeupsPerSecond = GetParam();
  MeasuredFrame::keepOnly(frame, kNow);
  EXPECT_EQ(bad.watts, 0);
  EXPECT_EQ(bad.cpuPercent, 0);
  EXPECT_EQ(bad.wakeupsPerSecond, 0);
  EXPECT_EQ(bad.gpuWatts, 0);
  EXPECT_EQ(a.watts, 2) << "the other row's";
  EXPECT_EQ(a.cpuPercent, 20);
  EXPECT_EQ(a.wakeupsPerSecond, 0);
}

TEST_P(NoFigure, IsNoDate) {
  Frame frame = frameAt(GetParam());
  MeasuredFrame::keepOnly(frame, kNow);
  EXPECT_EQ(frame.date, kNow);
}

INSTANTIATE_TEST_SUITE_P(MeasuredFrameTest, NoFigure,
                         testing::Values(kNaN, kInfinity, -kInfinity, 1e300, -1e300));

TEST(MeasuredFrameTest, DatesBeforeTheEpochAndBeyondFourDigitsAreNone) {
  for (const double date : {-1.0, MeasuredFrame::kLatestDate + 1}) {
    Frame frame = frameAt(date);
    MeasuredFrame::keepOnly(frame, kNow);
    EXPECT_EQ(frame.date, kNow);
  }
  for (const double date : {0.0, MeasuredFrame::kLatestDate}) {
    Frame frame = frameAt(date);
    MeasuredFrame::keepOnly(frame, kNow);
    EXPECT_EQ(frame.date, date);
  }
}

}  // namespace
}  // namespace embrix
