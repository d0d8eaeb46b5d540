#include "hosts/replay/replay_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "recorded_worlds.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A recording of which only the times count: tick by tick, each told when it begins.
class ReplayLoopTest : public testing::Test {
 protected:
  struct Tick {
    double uptime = 0;
    double wallTime = 0;
  };

  void beginTick() { ++begun; }
  ReplayedMoment moment() const {
    const Tick& now = ticks[begun];
    ReplayedMoment moment{.uptime = now.uptime, .wallTime = now.wallTime, .nextUptime = {}};
    if (begun + 1 < ticks.size()) moment.nextUptime = ticks[begun + 1].uptime;
    return moment;
  }
  auto note(std::string text) {
    return [this, text = std::move(text)] { log.push_back(text); };
  }

  // The first is the header's.
  std::vector<Tick> ticks = {{100, 5000}, {102, 5002}, {104, 5004}};
  std::size_t begun = 0;
  std::vector<std::string> log;
  ReplayLoop loop{[this] { return begun + 1 == ticks.size(); }, [this] { return moment(); }};
  Scheduler& scheduler = loop.scheduler();
};

TEST_F(ReplayLoopTest, TheClocksAreTheRecordings) {
  EXPECT_EQ(scheduler.uptime(), 100);
  EXPECT_EQ(scheduler.wallTime(), 5000);
  beginTick();
  EXPECT_EQ(scheduler.uptime(), 102);
  EXPECT_EQ(scheduler.wallTime(), 5002);
}

TEST_F(ReplayLoopTest, BetweenTicksTheyGoOnByWhatIsWaitedFor) {
  double up = 0;
  double wall = 0;
  const Scheduled timer = scheduler.after(1.5, [&] {
    up = scheduler.uptime();
    wall = scheduler.wallTime();
    loop.quit();
  });
  loop.run();
  EXPECT_EQ(up, 101.5);
  EXPECT_EQ(wall, 5001.5);
}

TEST_F(ReplayLoopTest, AndNeverPastTheNextTick) {
  double up = 0;
  const Scheduled timer = scheduler.after(10, [&] {
    up = scheduler.uptime();
    loop.quit();
  });
  loop.run();
  EXPECT_EQ(up, 102);
  beginTick();
  EXPECT_EQ(scheduler.uptime(), 102);
}

TEST_F(ReplayLoopTest, UptimeNeverGoesBackWhateverIsWaitedFor) {
  ticks.assign(500, {});
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    ticks[i] = {100 + 2 * static_cast<double>(i), 5000 + 2 * static_cast<double>(i)};
  }
  double last = 0;
  bool wentBack = false;
  std::function<void()> look;
  Scheduled next;
  int calls = 0;
  look = [&] {
    wentBack = wentBack || scheduler.uptime() < last;
    last = scheduler.uptime();
    if (++calls % 3 == 0) beginTick();
    wentBack = wentBack || scheduler.uptime() < last;
    last = scheduler.uptime();
    next = scheduler.after(calls % 7 * 0.4, look);
  };
  look();
  loop.run();
  EXPECT_FALSE(wentBack);
  EXPECT_EQ(begun, 499U);
}

TEST_F(ReplayLoopTest, EarlierComesBeforeLaterAndEqualInTheOrderAskedFor) {
  const Scheduled c = scheduler.after(3, note("c"));
  const Scheduled a = scheduler.after(0, note("a"));
  const Scheduled d = scheduler.after(3, note("d"));
  const Scheduled b = scheduler.after(-1, note("b"));
  loop.run();
  EXPECT_THAT(log, ElementsAre("a", "b", "c", "d"));
}

TEST_F(ReplayLoopTest, ATimerOfLaterComesWhenTheRecordingHasCaughtUp) {
  ticks = {{100, 5000}, {102, 5002}, {30'000, 34'900}, {30'002, 34'902}};
  std::function<void()> tick;
  Scheduled next;
  tick = [&] {
    beginTick();
    note("tick " + std::to_string(begun))();
    next = scheduler.after(2, tick);
  };
  const Scheduled hour = scheduler.after(3600, note("hour"));
  next = scheduler.after(2, tick);
  loop.run();
  EXPECT_THAT(log, ElementsAre("tick 1", "tick 2", "hour", "tick 3"));
}

TEST_F(ReplayLoopTest, OneThatPollsDoesNotKeepTheTickAway) {
  std::function<void()> poll;
  Scheduled polling;
  int polls = 0;
  poll = [&] {
    ++polls;
    polling = scheduler.after(0.2, poll);
  };
  poll();
  Scheduled second;
  const Scheduled first = scheduler.after(10, [&] {
    beginTick();
    second = scheduler.after(10, [&] { beginTick(); });
  });
  loop.run();
  EXPECT_EQ(begun, 2U);
  EXPECT_GT(polls, 90);
}

TEST_F(ReplayLoopTest, WorkIsDoneInOrderAndNeverInsideTheCall) {
  const Scheduled first =
      scheduler.background(WorkPriority::utility, note("work 1"), note("then 1"));
  const Scheduled second = scheduler.background(
      WorkPriority::userInitiated, [] { return 5; },
      [this](int result) { log.push_back("then " + std::to_string(result)); });
  EXPECT_THAT(log, IsEmpty());
  const Scheduled timer = scheduler.after(0, note("timer"));
  loop.run();
  EXPECT_THAT(log, ElementsAre("work 1", "then 1", "then 5", "timer"));
}

TEST_F(ReplayLoopTest, TheRunEndsWithWhatFollowsFromTheLastTick) {
  Scheduled save;
  Scheduled never;
  const Scheduled work = scheduler.background(
      WorkPriority::userInitiated,
      [&] {
        beginTick();
        beginTick();
      },
      [&] {
        note("frame")();
        save = scheduler.background(WorkPriority::utility, note("save"), note("saved"));
        never = scheduler.after(2, note("never"));
      });
  loop.run();
  EXPECT_THAT(log, ElementsAre("frame", "save", "saved"));
}

TEST_F(ReplayLoopTest, WithNothingToComeTheRunEnds) {
  loop.run();
  EXPECT_EQ(begun, 0U);
}

TEST_F(ReplayLoopTest, QuitEndsItAtOnce) {
  const Scheduled quit = scheduler.after(1, [&] { loop.quit(); });
  const Scheduled never = scheduler.after(2, note("never"));
  loop.run();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(ReplayLoopTest, SecondsThatAreNoNumberDoNotStopTheRun) {
  const Scheduled never = scheduler.after(std::numeric_limits<double>::infinity(), note("late"));
  const Scheduled odd = scheduler.after(std::numeric_limits<double>::quiet_NaN(), note("odd"));
  loop.run();
  EXPECT_THAT(log, ElementsAre("odd", "late"));
}

TEST(ReplayedMomentTest, TimesAreToldWithoutTakingAnAnswer) {
  ScriptedHost world;
  world.uptime = 100;
  world.wallTime = 5000;
  const std::string bytes = recordingOf(world, [&](Host& host) {
    for (int tick = 0; tick < 2; ++tick) {
      world.uptime += 2;
      world.wallTime += 2;
      host.clock->beginTick();
      host.clock->uptime();
      host.clock->wallTime();
    }
  });
  const Replay replay = replayOf(bytes);
  EXPECT_EQ(replay.moment().uptime, 100);
  EXPECT_EQ(replay.moment().wallTime, 5000);
  EXPECT_EQ(replay.moment().nextUptime, 102);
  replay.host.clock->beginTick();
  EXPECT_EQ(replay.moment().uptime, 100);
  EXPECT_EQ(replay.host.clock->uptime(), 102);
  EXPECT_EQ(replay.moment().uptime, 102);
  EXPECT_EQ(replay.moment().nextUptime, 104);
  replay.host.clock->beginTick();
  EXPECT_EQ(replay.moment().nextUptime, std::nullopt);
}

}  // namespace
}  // namespace embrix
