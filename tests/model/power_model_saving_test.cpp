#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class PowerModelSavingTest : public testing::Test {
 protected:
  void takeFrames(int count) {
    for (int i = 0; i < count; ++i, date += 2) world.take(frame());
  }

  Frame frame() {
    Frame made = frameAt(date, {app("Safari", 36)});
    made.battery = battery;
    return made;
  }

  bool hasFile(const char* name) const { return world.folder.has(std::string("Embrix/") + name); }

  ModelWorld world;
  double date = kMorning;
  std::optional<BatteryReading> battery;
};

TEST_F(PowerModelSavingTest, AtTwoSecondsTheFifteenthFrameSaves) {
  world.start();
  takeFrames(14);
  EXPECT_FALSE(hasFile("history.json"));
  takeFrames(1);
  ASSERT_TRUE(hasFile("history.json"));
  EXPECT_THAT(world.store.load(0), SizeIs(15));
  takeFrames(14);
  EXPECT_THAT(world.store.load(0), SizeIs(15));
  takeFrames(1);
  EXPECT_THAT(world.store.load(0), SizeIs(30));
}

TEST_F(PowerModelSavingTest, AtTenSecondsTheThirdFrameSaves) {
  world.defaults.set(SettingKeys::kShowWattsInMenuBar, false);
  world.start();
  takeFrames(2);
  EXPECT_FALSE(hasFile("history.json"));
  takeFrames(1);
  EXPECT_TRUE(hasFile("history.json"));
}

TEST_F(PowerModelSavingTest, AtFortySecondsEachFrameSaves) {
  world.defaults.set(SettingKeys::kSampleInterval, 40.0);
  world.start();
  for (std::size_t count = 1; count <= 3; ++count) {
    takeFrames(1);
    EXPECT_THAT(world.store.load(0), SizeIs(count));
  }
}

TEST_F(PowerModelSavingTest, OnlyTheWholeSecondsOfTheIntervalCount) {
  world.defaults.set(SettingKeys::kSampleInterval, 2.9);
  world.start();
  takeFrames(14);
  EXPECT_FALSE(hasFile("history.json")) << "14 times 2";
  takeFrames(1);
  EXPECT_TRUE(hasFile("history.json"));
}

TEST_F(PowerModelSavingTest, ASaveWritesTheDayAndFoldsItIntoTheArchive) {
  battery = onAdapter(80);
  battery->healthPercent = 93;
  world.start();
  takeFrames(15);
  const auto ledger = world.store.loadLedger();
  ASSERT_TRUE(ledger.has_value());
  EXPECT_NEAR(ledger->totalWattHours, 36 * 28 / 3600.0, 1e-9);
  const auto archive = world.store.loadArchive();
  ASSERT_TRUE(archive.has_value());
  ASSERT_THAT(archive->days(), SizeIs(1));
  EXPECT_EQ(archive->days()[0].day, "2025-06-15");
  EXPECT_EQ(archive->days()[0].wattHours, ledger->totalWattHours);
  EXPECT_EQ(archive->days()[0].health, 93);
  EXPECT_TRUE(hasFile("baseline.json"));
  EXPECT_EQ(*world.model().archive(), *archive);
}

TEST_F(PowerModelSavingTest, ADischargeIsWrittenOnlyWhenThereIsOne) {
  world.start();
  takeFrames(15);
  EXPECT_FALSE(hasFile("discharge.json"));
  battery = onBattery(80);
  takeFrames(15);
  EXPECT_TRUE(hasFile("discharge.json"));
}

TEST_F(PowerModelSavingTest, WhatCannotBeWrittenIsTriedAgainWithTheNextSave) {
  world.folder.write("Embrix", "a file where the folder should be");
  world.start();
  takeFrames(15);
  EXPECT_THAT(world.store.load(0), IsEmpty());
  std::filesystem::remove(world.folder / "Embrix");
  takeFrames(15);
  EXPECT_THAT(world.store.load(0), SizeIs(30));
}

TEST_F(PowerModelSavingTest, ASaveThatTakesLongIsNotOvertakenByTheNext) {
  world.defaults.set(SettingKeys::kSampleInterval, 30.0);
  world.start();
  world.scheduler.standing = WorkPriority::utility;
  takeFrames(3);
  EXPECT_EQ(world.scheduler.workWaiting(), 1U);
  world.scheduler.standing.reset();
  world.scheduler.runBackground();
  EXPECT_THAT(world.store.load(0), SizeIs(1));
  takeFrames(1);
  EXPECT_THAT(world.store.load(0), SizeIs(4));
}

TEST_F(PowerModelSavingTest, SleepOnBatteryLeavesAMarkAndWritesItAtOnce) {
  battery = onBattery(71, 44.5);
  world.start();
  takeFrames(2);
  world.scheduler.wall = date + 100;
  world.events.sleep();
  const auto saved = world.store.loadDischarge();
  ASSERT_TRUE(saved.has_value());
  ASSERT_TRUE(saved->sleepStart.has_value());
  EXPECT_EQ(saved->sleepStart->time, date + 100);
  EXPECT_EQ(saved->sleepStart->percent, 71);
  EXPECT_EQ(saved->sleepStart->remainingWh, 44.5);
  EXPECT_EQ((*world.model().discharge())->sleepStart, saved->sleepStart);
  EXPECT_FALSE(hasFile("history.json")) << "the session alone is written";
}

// A wake that was never told of, or a run that was killed asleep, leaves the mark of the sleep
// before.
TEST_F(PowerModelSavingTest, AnotherSleepTakesThePlaceOfAMarkThatIsThere) {
  battery = onBattery(71, 44.5);
  world.start();
  takeFrames(1);
  world.scheduler.wall = date;
  world.events.sleep();
  battery = onBattery(69, 42.5);
  takeFrames(1);
  world.scheduler.wall = date + 100;
  world.events.sleep();
  const auto saved = world.store.loadDischarge();
  ASSERT_TRUE(saved && saved->sleepStart);
  EXPECT_EQ(saved->sleepStart->time, date + 100);
  EXPECT_EQ(saved->sleepStart->percent, 69);
  EXPECT_EQ(saved->sleepStart->remainingWh, 42.5);
}

struct SleepCase {
  std::string label;
  std::optional<BatteryReading> battery;
};

class NoSleepMarkRule : public testing::TestWithParam<SleepCase> {};

TEST_P(NoSleepMarkRule, LeavesNoMarkAndWritesNothing) {
  ModelWorld world;
  world.start();
  Frame frame = frameAt(kMorning);
  frame.battery = onBattery(80);
  world.take(frame);  // so that there is a session
  frame.date += 2;
  frame.battery = GetParam().battery;
  world.take(frame);
  world.events.sleep();
  EXPECT_FALSE(world.folder.has("Embrix/discharge.json"));
  EXPECT_EQ((*world.model().discharge())->sleepStart, std::nullopt);
}

BatteryReading charging() {
  BatteryReading battery = onBattery(80);
  battery.isCharging = true;
  return battery;
}

INSTANTIATE_TEST_SUITE_P(PowerModelSavingTest, NoSleepMarkRule,
                         testing::Values(SleepCase{"OnTheAdapter", onAdapter(80)},
                                         SleepCase{"Charging", charging()},
                                         SleepCase{"WithoutABattery", std::nullopt}),
                         [](const auto& test) { return test.param.label; });

TEST_F(PowerModelSavingTest, SleepBeforeTheFirstFrameDoesNothing) {
  world.store.saveDischarge(DischargeSession::begun(kMorning - 10, 80));
  world.start();
  world.events.sleep();
  EXPECT_EQ(world.store.loadDischarge()->sleepStart, std::nullopt);
}

TEST_F(PowerModelSavingTest, ASaveUnderWayDoesNotTakeTheMarkOffTheDisk) {
  battery = onBattery(71);
  world.defaults.set(SettingKeys::kSampleInterval, 30.0);
  world.start();
  world.scheduler.standing = WorkPriority::utility;
  takeFrames(1);  // its save waits, with a session without a mark
  world.events.sleep();
  world.scheduler.standing.reset();
  ASSERT_TRUE(world.scheduler.doWork());  // and the main thread has not gone on yet
  ASSERT_TRUE(world.store.loadDischarge().has_value());
  EXPECT_TRUE(world.store.loadDischarge()->sleepStart.has_value());
  EXPECT_TRUE(world.store.loadArchive().has_value());
  world.scheduler.runBackground();
  EXPECT_TRUE(world.store.loadDischarge()->sleepStart.has_value());
}

TEST_F(PowerModelSavingTest, TheSaveAfterASleepHasTheSessionAgain) {
  battery = onBattery(71);
  world.defaults.set(SettingKeys::kSampleInterval, 30.0);
  world.start();
  world.scheduler.standing = WorkPriority::utility;
  takeFrames(1);
  world.events.sleep();
  world.scheduler.standing.reset();
  world.scheduler.runBackground();
  takeFrames(2);
  EXPECT_EQ(world.store.loadDischarge(), *world.model().discharge());
}

TEST_F(PowerModelSavingTest, AWakeIsToldToTheSessionWithTheFirstChargeAfterIt) {
  battery = onBattery(71, 44);
  world.start();
  takeFrames(2);
  world.scheduler.wall = kMorning + 100;
  world.events.sleep();
  world.scheduler.wall = kMorning + 100 + 3600;
  world.events.wake();
  EXPECT_EQ((*world.model().discharge())->asleepSeconds, 0) << "no fresh charge is known yet";
  battery = onBattery(69, 42.5);
  date = kMorning + 3720;
  takeFrames(1);
  const DischargeSession& session = **world.model().discharge();
  EXPECT_EQ(session.asleepSeconds, 3600);
  EXPECT_EQ(session.asleepPercent, 2);
  EXPECT_EQ(session.asleepWattHours, 1.5);
  EXPECT_EQ(session.sleepStart, std::nullopt);
}

}  // namespace
}  // namespace embrix
