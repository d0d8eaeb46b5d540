#include "base/live_scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A machine whose time is the test's.
class LiveSchedulerTest : public testing::Test {
 protected:
  Clockwork clockwork() {
    return {.wallTime = [this] { return wall; },
            .uptime = [this] { return up; },
            .wakeAt = [this](std::optional<double> at) { wakeAt = at; },
            .wakeNow = [this] { ++wakes; },
            .beginThread = [this](WorkPriority) { ++threads; }};
  }
  auto note(std::string text) {
    return [this, text = std::move(text)] { log.push_back(text); };
  }
  // The main loop, which has nothing else to do.
  void turnUntil(const std::function<bool()>& isSo) {
    while (!isSo()) {
      scheduler.turn();
      std::this_thread::yield();
    }
  }

  double wall = 5000;
  double up = 100;
  std::optional<double> wakeAt;
  std::atomic<int> wakes = 0;
  std::atomic<int> threads = 0;
  std::atomic<bool> isFree = false;
  std::vector<std::string> log;
  LiveScheduler scheduler{clockwork()};
};

TEST_F(LiveSchedulerTest, TheLoopIsWokenForTheNextTimerAlone) {
  const Scheduled late = scheduler.after(10, note("late"));
  EXPECT_EQ(wakeAt, 110);
  const Scheduled soon = scheduler.after(2, note("soon"));
  EXPECT_EQ(wakeAt, 102);
  const Scheduled later = scheduler.after(20, note("later"));
  EXPECT_EQ(wakeAt, 102);
  up = 102;
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("soon"));
  EXPECT_EQ(wakeAt, 110);
  up = 130;
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("soon", "late", "later"));
  EXPECT_EQ(wakeAt, std::nullopt);
}

TEST_F(LiveSchedulerTest, NothingComesBeforeItsTime) {
  const Scheduled timer = scheduler.after(2, note("timer"));
  up = 101.999;
  scheduler.turn();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LiveSchedulerTest, TheWallClockMovesNoTimer) {
  const Scheduled timer = scheduler.after(2, note("timer"));
  wall += 1e9;
  scheduler.turn();
  EXPECT_THAT(log, IsEmpty());
  EXPECT_EQ(scheduler.wallTime(), 5000 + 1e9);
}

TEST_F(LiveSchedulerTest, EqualTimesComeInTheOrderAskedFor) {
  const Scheduled a = scheduler.after(0, note("a"));
  const Scheduled b = scheduler.after(-7, note("b"));
  const Scheduled c = scheduler.after(std::numeric_limits<double>::quiet_NaN(), note("c"));
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("a", "b", "c"));
}

TEST_F(LiveSchedulerTest, WhatATimerAsksForAtOnceComesInALaterTurn) {
  Scheduled second;
  const Scheduled first = scheduler.after(0, [&] { second = scheduler.after(0, note("second")); });
  scheduler.turn();
  EXPECT_THAT(log, IsEmpty());
  EXPECT_EQ(wakeAt, up);
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("second"));
}

TEST_F(LiveSchedulerTest, DoneWorkWakesTheLoopAndCallsBackInItsTurn) {
  const Scheduled work = scheduler.background(
      WorkPriority::utility, [] { return 5; },
      [&](int five) { log.push_back(std::to_string(five)); });
  while (wakes == 0) std::this_thread::yield();
  EXPECT_THAT(log, IsEmpty());
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("5"));
}

TEST_F(LiveSchedulerTest, AllWorkIsDoneOnABoundedNumberOfThreads) {
  std::vector<Scheduled> works;
  std::atomic<int> running = 0;
  std::atomic<int> mostAtOnce = 0;
  int done = 0;
  for (int i = 0; i < 200; ++i) {
    works.push_back(scheduler.background(
        WorkPriority::utility,
        [&] {
          const int atOnce = ++running;
          int most = mostAtOnce;
          while (most < atOnce && !mostAtOnce.compare_exchange_weak(most, atOnce)) {
          }
          --running;
        },
        [&done] { ++done; }));
  }
  turnUntil([&] { return done == 200; });
  EXPECT_LE(mostAtOnce, 4);
  EXPECT_LE(threads, 4);
}

TEST_F(LiveSchedulerTest, WorkThatWaitsHoldsUpNoneOfTheOtherPriority) {
  std::vector<Scheduled> stuck;
  for (int i = 0; i < 20; ++i) {
    stuck.push_back(scheduler.background(
        WorkPriority::utility,
        [&] {
          while (!isFree) std::this_thread::yield();
        },
        [] {}));
  }
  bool isDone = false;
  const Scheduled urgent = scheduler.background(
      WorkPriority::userInitiated, [] {}, [&] { isDone = true; });
  turnUntil([&] { return isDone; });
  isFree = true;
}

}  // namespace
}  // namespace embrix
