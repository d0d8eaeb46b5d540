// What no machine should tell, told: the run goes on, and the records stay readable.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class ModelHostileTest : public testing::Test {
 protected:
  ModelHostileTest() {
    world.defaults.set(SettingKeys::kSampleInterval, 30.0);  // every frame saves
    world.start();
  }

  // Everything that was saved is read by a program that starts again.
  void expectReadableRecords() {
    const HistoryStore& store = world.store;
    EXPECT_FALSE(store.load(-1).empty());
    EXPECT_TRUE(store.loadLedger().has_value());
    EXPECT_TRUE(store.loadArchive().has_value());
    EXPECT_TRUE(store.loadBaseline().has_value());
  }

  ModelWorld world;
  PowerModel& model = world.model();
  double date = kMorning;
};

class HostileFigure : public ModelHostileTest, public testing::WithParamInterface<double> {};

TEST_P(HostileFigure, CostsNoRecord) {
  world.alertAt(3, 1);
  for (int i = 0; i < 5; ++i, date += 30) {
    Frame frame = frameAt(date, {app("Safari", 5, 1), app("Mail", 2, 2)});
    frame.battery = onBattery(80);
    if (i == 2) {
      frame.groups[0].watts = frame.groups[0].cpuPercent = GetParam();
      frame.groups[1].processes[0].watts = GetParam();
      frame.battery->systemWatts = frame.battery->remainingWh = GetParam();
      frame.battery->fullWh = GetParam();
      frame.temperature = GetParam();
      frame.date = GetParam();
    }
    world.take(frame);
  }
  world.events.sleep();
  expectReadableRecords();
  EXPECT_TRUE(std::isfinite(model.ledger()->totalWattHours));
  EXPECT_TRUE(std::isfinite((*model.discharge())->totalWattHours));
  for (const auto& [key, average] : *model.tenMinuteAverages()) {
    EXPECT_TRUE(std::isfinite(average)) << key.view();
  }
  for (const float sample : model.baseline()->samples()) EXPECT_TRUE(std::isfinite(sample));
  EXPECT_TRUE(ControlState::load(&world.suite).has_value());
}

INSTANTIATE_TEST_SUITE_P(ModelHostileTest, HostileFigure,
                         testing::Values(std::nan(""), kInfinity, -kInfinity, 1e308, -1e308, 1e15,
                                         1.8446744073709552e19));

TEST_F(ModelHostileTest, NamesThatAreNoUTF8CostNoRecord) {
  Frame frame = frameAt(date, {group("a\xff", "\xc3\x28", {row(1, "\xf0\x9f", 6)}),
                               group("b", "line\nbreak\x01\"\\", {row(2, "\xed\xa0\x80", 3)})});
  frame.battery = onBattery(80);
  frame.forgotten = {forgotten("\xff", {row(1, "\xf0\x9f", 6)})};
  world.take(frame);
  frame.date += 30;
  world.take(frame);
  model.addCalmRule("\xf0\x9f", CalmRule::Condition::always);
  model.keep(frame.forgotten[0]);
  expectReadableRecords();
  EXPECT_TRUE(world.store.loadDischarge().has_value());
  EXPECT_TRUE(ControlState::load(&world.suite).has_value());
  EXPECT_THAT(model.forgottenRows(), IsEmpty());
  EXPECT_THAT(*world.renew().calmRules(), SizeIs(1));
}

TEST_F(ModelHostileTest, TheLargestAndSmallestPIDsAreOrdinary) {
  const auto largest = std::numeric_limits<std::int32_t>::max();
  const auto smallest = std::numeric_limits<std::int32_t>::min();
  const Frame frame =
      frameAt(date, {group("a", "A", {row(largest, "x", 2), row(smallest, "x", 1)})});
  world.bringToLife(frame);
  world.take(frame);
  model.addCalmRule("A", CalmRule::Condition::always);
  EXPECT_THAT(*model.calmed(), testing::ElementsAre(smallest, largest));
  model.stop(smallest);
  model.restoreAllCalmed();
  EXPECT_THAT(world.control.background, IsEmpty());
}

TEST_F(ModelHostileTest, EmptyGroupsKeysAndNamesAreTaken) {
  AppGroup hollow;
  hollow.watts = 5;
  Frame frame = frameAt(date, {hollow, hollow, group("", "", {row(1, "", 3)})});
  world.alertAt(3, 0);
  world.take(frame);
  frame.date += 30;
  world.take(frame);
  expectReadableRecords();
  EXPECT_THAT(*model.runaways(), SizeIs(1)) << "groups of one key count as one";
  EXPECT_THAT(model.targetsInGroup(""), IsEmpty()) << "of the first of that key";
  world.notifier.respond({.action = "stop", .group = ""});
}

TEST_F(ModelHostileTest, AClockThatJumpsYearsLeavesTheRunGoing) {
  constexpr double kYear = 365 * 86400.0;
  world.alertAt(3, 1);
  for (const double jump : {0.0, kYear, -2 * kYear, kYear, 50 * kYear, -54 * kYear, 5 * kYear}) {
    date += jump;
    for (int i = 0; i < 3; ++i, date += 30) {
      Frame frame = frameAt(date, {app("Safari", 12)});
      frame.battery = onBattery(80);
      world.take(frame);
      world.events.sleep();
      world.events.wake();
    }
  }
  expectReadableRecords();
  EXPECT_GE(model.ledger()->totalWattHours, 0);
  EXPECT_GE((*model.discharge())->asleepSeconds, 0);
}

struct SettingCase {
  std::string label;
  std::string_view key;
  SettingValue value;
};

class HostileSetting : public testing::TestWithParam<SettingCase> {};

TEST_P(HostileSetting, StopsNothing) {
  ModelWorld world(Records::dropped);
  world.alertAt(3, 1);
  world.defaults.set(SettingKeys::kAutomaticHeat, false);
  world.defaults.set(GetParam().key, GetParam().value);
  PowerModel& model = world.start();
  for (int i = 0; i < 10; ++i) {
    Frame frame = frameAt(kMorning + 30 * i, {app("Safari", 12)});
    frame.battery = onBattery(80);
    world.take(frame);
  }
  EXPECT_THAT(model.history()->points(), SizeIs(10));
  EXPECT_TRUE(std::isfinite(model.ledger()->totalWattHours));
}

INSTANTIATE_TEST_SUITE_P(
    ModelHostileTest, HostileSetting,
    testing::Values(SettingCase{"MinutesThatAreNone", SettingKeys::kAlertMinutes, std::nan("")},
                    SettingCase{"EndlessMinutes", SettingKeys::kAlertMinutes, kInfinity},
                    SettingCase{"NegativeMinutes", SettingKeys::kAlertMinutes, -5.0},
                    SettingCase{"HugeMinutes", SettingKeys::kAlertMinutes, 1e300},
                    SettingCase{"WattsThatAreNone", SettingKeys::kAlertWatts, std::nan("")},
                    SettingCase{"NegativeWatts", SettingKeys::kAlertWatts, -kInfinity},
                    SettingCase{"AWordForANumber", SettingKeys::kAlertMinutes, std::string("x")},
                    SettingCase{"NoWarmth", SettingKeys::kWarmWatts, std::nan("")},
                    SettingCase{"AHugeInterval", SettingKeys::kSampleInterval, 1000.0}),
    [](const auto& test) { return test.param.label; });

}  // namespace
}  // namespace embrix
