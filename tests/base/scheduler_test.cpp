#include "base/scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/manual_scheduler.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SchedulerTest : public testing::Test {
 protected:
  auto note(std::string text) {
    return [this, text = std::move(text)] { log.push_back(text); };
  }

  ManualScheduler scheduler;
  std::vector<std::string> log;
};

TEST_F(SchedulerTest, ACallbackComesAtItsTimeAndOnce) {
  const Scheduled first = scheduler.after(2, note("two"));
  EXPECT_TRUE(first.isPending());
  scheduler.advance(1.9);
  EXPECT_THAT(log, IsEmpty());
  scheduler.advance(0.1);
  EXPECT_THAT(log, ElementsAre("two"));
  EXPECT_FALSE(first.isPending());
  scheduler.advance(100);
  EXPECT_THAT(log, ElementsAre("two"));
}

TEST_F(SchedulerTest, EarlierComesBeforeLaterAndEqualInTheOrderAskedFor) {
  const Scheduled a = scheduler.after(3, note("a"));
  const Scheduled b = scheduler.after(1, note("b"));
  const Scheduled c = scheduler.after(3, note("c"));
  const Scheduled d = scheduler.after(-5, note("d"));
  scheduler.advance(3);
  EXPECT_THAT(log, ElementsAre("d", "b", "a", "c"));
}

TEST_F(SchedulerTest, BothClocksStandAtTheMomentOfTheCallback) {
  const double wall = scheduler.wallTime();
  const double up = scheduler.uptime();
  double seenWall = 0;
  double seenUp = 0;
  const Scheduled look = scheduler.after(4, [&] {
    seenWall = scheduler.wallTime();
    seenUp = scheduler.uptime();
  });
  scheduler.advance(10);
  EXPECT_EQ(seenWall, wall + 4);
  EXPECT_EQ(seenUp, up + 4);
  EXPECT_EQ(scheduler.uptime(), up + 10);
}

TEST_F(SchedulerTest, ACallbackThatAsksForTheNextGoesOnWithinTheSameTime) {
  Scheduled next;
  std::function<void()> tick = [&] {
    log.push_back("tick");
    next = scheduler.after(1, tick);
  };
  next = scheduler.after(1, tick);
  scheduler.advance(3.5);
  EXPECT_THAT(log, ElementsAre("tick", "tick", "tick"));
}

TEST_F(SchedulerTest, WhatIsCancelledOrForgottenNeverComes) {
  const auto held = std::make_shared<int>();
  Scheduled cancelled = scheduler.after(1, [this, held] { log.push_back("cancelled"); });
  { const Scheduled forgotten = scheduler.after(1, note("forgotten")); }
  Scheduled replaced = scheduler.after(1, note("replaced"));
  replaced = scheduler.after(1, note("replacement"));
  EXPECT_EQ(held.use_count(), 2);
  cancelled.cancel();
  EXPECT_FALSE(cancelled.isPending());
  EXPECT_EQ(held.use_count(), 1) << "the callback holds on to what it captured";
  scheduler.advance(2);
  EXPECT_THAT(log, ElementsAre("replacement"));
}

TEST_F(SchedulerTest, WhatIsDetachedComesWithoutItsHandle) {
  scheduler.after(1, note("detached")).detach();
  scheduler.advance(1);
  EXPECT_THAT(log, ElementsAre("detached"));
}

TEST_F(SchedulerTest, MovingAHandleKeepsTheCallback) {
  Scheduled first = scheduler.after(1, note("moved"));
  const Scheduled second = std::move(first);
  scheduler.advance(1);
  EXPECT_THAT(log, ElementsAre("moved"));
}

TEST_F(SchedulerTest, ACallbackMayDestroyItsOwnHandle) {
  auto handle = std::make_unique<Scheduled>();
  *handle = scheduler.after(1, [&] {
    handle.reset();
    log.push_back("done");
  });
  scheduler.advance(1);
  EXPECT_THAT(log, ElementsAre("done"));
}

TEST_F(SchedulerTest, BackgroundWorkHandsItsResultToTheMainThread) {
  const Scheduled work = scheduler.background(
      WorkPriority::utility,
      [this] {
        log.push_back("work");
        return std::make_unique<int>(42);
      },
      [this](std::unique_ptr<int> result) { log.push_back("then " + std::to_string(*result)); });
  EXPECT_THAT(log, IsEmpty());
  EXPECT_TRUE(scheduler.doWork());
  EXPECT_THAT(log, ElementsAre("work"));
  EXPECT_TRUE(work.isPending());
  scheduler.finishWork();
  EXPECT_THAT(log, ElementsAre("work", "then 42"));
  EXPECT_FALSE(work.isPending());
}

TEST_F(SchedulerTest, BackgroundWorkMayReturnNothing) {
  const Scheduled work =
      scheduler.background(WorkPriority::userInitiated, note("work"), note("then"));
  scheduler.runBackground();
  EXPECT_THAT(log, ElementsAre("work", "then"));
  EXPECT_THAT(scheduler.priorities, ElementsAre(WorkPriority::userInitiated));
}

TEST_F(SchedulerTest, CancelledWorkStillRunsAndIsNotHeardOf) {
  Scheduled before = scheduler.background(WorkPriority::utility, note("work 1"), note("then 1"));
  before.cancel();
  Scheduled between = scheduler.background(WorkPriority::utility, note("work 2"), note("then 2"));
  scheduler.doWork();
  scheduler.doWork();
  between.cancel();
  scheduler.finishWork();
  EXPECT_THAT(log, ElementsAre("work 1", "work 2"));
}

TEST_F(SchedulerTest, WorkThatAsksForWorkIsDoneToo) {
  Scheduled second;
  const Scheduled first = scheduler.background(WorkPriority::utility, note("work 1"), [&] {
    second = scheduler.background(WorkPriority::utility, note("work 2"), note("then 2"));
  });
  scheduler.runBackground();
  EXPECT_THAT(log, ElementsAre("work 1", "work 2", "then 2"));
}

}  // namespace
}  // namespace embrix
