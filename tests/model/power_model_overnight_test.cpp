#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "worlds/model_world.h"

namespace embrix {
namespace {

constexpr const char* kNight =
    "2025-06-14 23:00:00 +0000 Sleep               \tEntering Sleep Using Batt (Charge:80%) \n"
    "2025-06-15 07:00:00 +0000 Wake                \tWake from Deep Idle Using BATT (Charge:77%) "
    "\n";

class PowerModelOvernightTest : public testing::Test {
 protected:
  PowerModelOvernightTest() { world.start(); }

  auto reads() const {
    return std::count(world.machine.log.begin(), world.machine.log.end(), "powerLog.read");
  }

  void refresh(bool force) {
    model.refreshOvernight(force);
    world.scheduler.runBackground();
  }

  ModelWorld world;
  PowerModel& model = world.model();
};

TEST_F(PowerModelOvernightTest, TheStoryIsReadInTheBackground) {
  world.machine.powerLog = kNight;
  model.refreshOvernight(false);
  EXPECT_EQ(reads(), 0);
  EXPECT_EQ(world.scheduler.priorities.back(), WorkPriority::utility);
  world.scheduler.runBackground();
  ASSERT_TRUE(model.overnight()->has_value());
  EXPECT_EQ((*model.overnight())->chargeAtSleep, 80);
  EXPECT_EQ((*model.overnight())->wokeAt - (*model.overnight())->sleptAt, 8 * 3600);
}

TEST_F(PowerModelOvernightTest, ItIsReadAgainOnlyAfterMoreThanHalfAnHour) {
  refresh(false);
  world.scheduler.advance(1800);
  refresh(false);
  EXPECT_EQ(reads(), 1);
  world.scheduler.advance(0.1);
  refresh(false);
  EXPECT_EQ(reads(), 2);
}

TEST_F(PowerModelOvernightTest, AWakeReadsItAtOnce) {
  refresh(false);
  world.machine.powerLog = kNight;
  world.events.wake();
  world.scheduler.runBackground();
  EXPECT_EQ(reads(), 2);
  EXPECT_TRUE(model.overnight()->has_value());
  refresh(false);
  EXPECT_EQ(reads(), 2) << "a forced reading counts for the pace, too";
}

TEST_F(PowerModelOvernightTest, ALogWithoutANightTakesTheLastOneAway) {
  world.machine.powerLog = kNight;
  refresh(true);
  world.machine.powerLog.clear();
  refresh(true);
  EXPECT_EQ(*model.overnight(), std::nullopt);
}

TEST_F(PowerModelOvernightTest, ReadingsNeverOverlapAndTheNewestIsAfterTheNewestWake) {
  world.scheduler.runBackground();  // the first sample is out of the way
  world.events.wake();
  world.events.wake();
  world.events.wake();
  EXPECT_EQ(world.scheduler.workWaiting(), 1U);
  world.scheduler.doWork();
  world.machine.powerLog = kNight;
  world.scheduler.runBackground();
  EXPECT_EQ(reads(), 2);
  EXPECT_TRUE(model.overnight()->has_value());
}

TEST_F(PowerModelOvernightTest, DemoDataKeepsItsStory) {
  model.showFixture({});
  refresh(true);
  EXPECT_EQ(reads(), 0);
}

}  // namespace
}  // namespace embrix
