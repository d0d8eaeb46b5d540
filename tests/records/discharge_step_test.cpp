#include "records/discharge_step.h"

#include <string_view>

#include <gtest/gtest.h>

#include "sample_records.h"

namespace embrix {
namespace {

using namespace std::string_view_literals;

constexpr double kNow = 1'750'000'000;

Frame frameAt(double date, std::optional<int> percent, bool isOnPower = false) {
  Frame frame;
  frame.date = date;
  frame.battery = BatteryReading{.percent = percent, .externalConnected = isOnPower};
  AppGroup group;
  group.identity = {.key = "a", .name = "A", .app = {}};
  group.watts = 3.6;
  frame.groups = {group};
  return frame;
}

DischargeState leftWith(double lastTime, std::optional<int> startPercent) {
  DischargeState state;
  state.session = DischargeSession::begun(kNow - 1e6, startPercent);
  state.session->lastTime = lastTime;
  return state;
}

constexpr double kHour = 3600;

TEST(DischargeStepTest, AfterARestartASessionGoesOnOrBeginsAnew) {
  struct Case {
    const char* label;
    double age;
    std::optional<int> startPercent;
    std::optional<int> percent;
    bool beginsAnew;
  };
  const Case cases[] = {
      {"11 hours old at the same charge", 11 * kHour, 80, 80, false},
      {"just below 12 hours", 12 * kHour - 0.1, 80, 80, false},
      {"12 hours old", 12 * kHour, 80, 80, true},
      {"a charge of one more", 60, 60, 61, true},
      {"the charge of the start", 60, 60, 60, false},
      {"less charge", 60, 60, 12, false},
      {"no charge known at the start counts as full", 60, {}, 100, false},
      {"no charge known now counts as none", 60, 0, {}, false},
      {"a clock set back", -31'536'000, 60, 60, false},
      {"a clock set forward a year", 31'536'000, 60, 60, true},
  };
  for (const Case& c : cases) {
    DischargeState state = leftWith(kNow - c.age, c.startPercent);
    recordDischarge(state, frameAt(kNow, c.percent), {}, 10);
    ASSERT_TRUE(state.session) << c.label;
    EXPECT_EQ(state.session->start == kNow, c.beginsAnew) << c.label;
    EXPECT_EQ(state.wasOnBattery, true) << c.label;
  }
}

TEST(DischargeStepTest, TheFirstFrameOnBatteryBeginsASessionAndAddsNothing) {
  DischargeState state;
  recordDischarge(state, frameAt(kNow, 98), {}, 10);
  EXPECT_EQ(state.session, DischargeSession::begun(kNow, 98));
}

TEST(DischargeStepTest, WithoutABatteryThereIsNoSession) {
  DischargeState state;
  state.pendingWake = kNow - 1;
  Frame frame = frameAt(kNow, 98);
  frame.battery.reset();
  recordDischarge(state, frame, kNow - 2, 10);
  EXPECT_EQ(state.session, std::nullopt);
  EXPECT_EQ(state.wasOnBattery, std::nullopt);
  EXPECT_EQ(state.pendingWake, kNow - 1);
}

TEST(DischargeStepTest, OnPowerTheSessionRests) {
  for (const bool isCharging : {true, false}) {
    DischargeState state = leftWith(kNow - 60, 80);
    const auto before = state.session;
    Frame frame = frameAt(kNow, 70);
    frame.battery->isCharging = isCharging;
    frame.battery->externalConnected = !isCharging;
    recordDischarge(state, frame, kNow - 2, 10);
    EXPECT_EQ(state.session, before);
    EXPECT_EQ(state.wasOnBattery, false);
  }
}

TEST(DischargeStepTest, UnpluggingBeginsANewSession) {
  DischargeState state;
  recordDischarge(state, frameAt(kNow, 80), {}, 10);
  recordDischarge(state, frameAt(kNow + 2, 80, true), kNow, 10);
  recordDischarge(state, frameAt(kNow + 4, 80), kNow + 2, 18);
  DischargeSession expected = DischargeSession::begun(kNow + 4, 80);
  expected.record(kNow + 4, 18, DischargeSession::entriesOf(frameAt(kNow, 80).groups), 2);
  EXPECT_EQ(state.session, expected);
}

TEST(DischargeStepTest, PluggingInAndOutBetweenTwoFramesGoesUnseen) {
  DischargeState state;
  recordDischarge(state, frameAt(kNow, 80), {}, 10);
  recordDischarge(state, frameAt(kNow + 600, 85), kNow, 10);
  EXPECT_EQ(state.session->start, kNow);
}

TEST(DischargeStepTest, FramesOnBatteryAddUp) {
  DischargeState state;
  recordDischarge(state, frameAt(kNow, 80), {}, 10);
  recordDischarge(state, frameAt(kNow + 10, 80), kNow, 18);
  EXPECT_DOUBLE_EQ(state.session->totalWattHours, 0.05);
  EXPECT_DOUBLE_EQ(state.session->groupWattHours.at("a"sv), 0.01);
  EXPECT_EQ(state.session->lastTime, kNow + 10);
}

TEST(DischargeStepTest, AWakeIsTakenInWithTheFirstReadingAfterIt) {
  DischargeState state;
  recordDischarge(state, frameAt(kNow, 80), {}, 10);
  state.session->sleepStart = {.time = kNow, .percent = 80, .remainingWh = {}};
  state.pendingWake = kNow + 1000;
  recordDischarge(state, frameAt(kNow + 1002, 77), kNow, 36);
  EXPECT_EQ(state.session->asleepSeconds, 1000);
  EXPECT_EQ(state.session->asleepPercent, 3);
  EXPECT_DOUBLE_EQ(state.session->totalWattHours, 0.3);
  EXPECT_EQ(state.session->lastTime, kNow + 1002);
  EXPECT_EQ(state.pendingWake, std::nullopt);
}

TEST(DischargeStepTest, AWakeOnPowerClearsTheMarkToo) {
  DischargeState state;
  recordDischarge(state, frameAt(kNow, 80), {}, 10);
  state.session->sleepStart = {.time = kNow, .percent = 80, .remainingWh = {}};
  state.pendingWake = kNow + 1000;
  recordDischarge(state, frameAt(kNow + 1002, 79, true), kNow, 36);
  EXPECT_EQ(state.session->sleepStart, std::nullopt);
  EXPECT_EQ(state.session->asleepPercent, 1);
  EXPECT_EQ(state.session->totalWattHours, 0);
  EXPECT_EQ(state.pendingWake, std::nullopt);
}

TEST(DischargeStepTest, AWakeBeforeAnySessionIsForgotten) {
  DischargeState state;
  state.pendingWake = kNow - 5;
  recordDischarge(state, frameAt(kNow, 80), {}, 10);
  EXPECT_EQ(state.pendingWake, std::nullopt);
  EXPECT_EQ(state.session, DischargeSession::begun(kNow, 80));
}

// The wake is told to the session that slept, and moves its time, before it is asked how old it is.
TEST(DischargeStepTest, ASessionThatSleptLongGoesOnAfterARestart) {
  DischargeState state = leftWith(kNow - 20 * kHour, 80);
  state.session->sleepStart = {.time = kNow - 20 * kHour, .percent = 80, .remainingWh = {}};
  state.pendingWake = kNow - 1;
  recordDischarge(state, frameAt(kNow, 70), {}, 10);
  EXPECT_EQ(state.session->start, kNow - 1e6);
  EXPECT_EQ(state.session->asleepPercent, 10);
}

}  // namespace
}  // namespace embrix
