#include "hosts/linux/event_loop.h"
#include "fakes/sanitized.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "hosts/linux/clock.h"
#include "hosts/linux/io_priority.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LinuxEventLoopTest : public testing::Test {
 protected:
  auto note(std::string text) {
    return [this, text = std::move(text)] { log.push_back(text); };
  }
  auto quit() {
    return [this] { loop.quit(); };
  }

  LinuxEventLoop loop;
  Scheduler& scheduler = loop.scheduler();
  std::vector<std::string> log;
};

TEST_F(LinuxEventLoopTest, TheClocksAreTheMachines) {
  timespec boot{};
  ::clock_gettime(CLOCK_BOOTTIME, &boot);
  EXPECT_GE(scheduler.uptime(), static_cast<double>(boot.tv_sec));
  timespec wall{};
  ::clock_gettime(CLOCK_REALTIME, &wall);
  EXPECT_GE(scheduler.wallTime(), static_cast<double>(wall.tv_sec));
}

TEST_F(LinuxEventLoopTest, EarlierComesBeforeLaterAndEqualInTheOrderAskedFor) {
  const Scheduled last = scheduler.after(0.05, quit());
  const Scheduled later = scheduler.after(0.02, note("later"));
  const Scheduled a = scheduler.after(0, note("a"));
  const Scheduled b = scheduler.after(-5, note("b"));
  const Scheduled c = scheduler.after(0, note("c"));
  EXPECT_THAT(log, IsEmpty());
  loop.run();
  EXPECT_THAT(log, ElementsAre("a", "b", "c", "later"));
}

TEST_F(LinuxEventLoopTest, ATimerIsNeverEarly) {
  const double asked = scheduler.uptime();
  double came = 0;
  const Scheduled timer = scheduler.after(0.03, [&] {
    came = scheduler.uptime();
    loop.quit();
  });
  loop.run();
  EXPECT_GE(came, asked + 0.03);
}

TEST_F(LinuxEventLoopTest, SecondsThatAreNoNumberDoNotStopTheLoop) {
  const Scheduled never = scheduler.after(std::numeric_limits<double>::infinity(), note("never"));
  const Scheduled atOnce = scheduler.after(std::numeric_limits<double>::quiet_NaN(), quit());
  loop.run();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LinuxEventLoopTest, ACancelledTimerNeverComes) {
  Scheduled first = scheduler.after(0.01, note("cancelled"));
  Scheduled second = scheduler.after(0, [&] { first.cancel(); });
  const Scheduled last = scheduler.after(0.02, quit());
  loop.run();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LinuxEventLoopTest, ACallbackCanCancelOneOfTheSameMoment) {
  Scheduled second;
  const Scheduled first = scheduler.after(0, [&] { second.cancel(); });
  second = scheduler.after(0, note("cancelled"));
  const Scheduled last = scheduler.after(0.01, quit());
  loop.run();
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LinuxEventLoopTest, WhoAsksForItselfAtOnceLeavesOthersTheirTurn) {
  std::function<void()> again;
  Scheduled next;
  again = [&] { next = scheduler.after(0, again); };
  again();
  const Scheduled work = scheduler.background(
      WorkPriority::userInitiated, [] {}, quit());
  loop.run();
}

TEST_F(LinuxEventLoopTest, WorkRunsElsewhereAndItsResultComesBack) {
  const auto here = std::this_thread::get_id();
  std::thread::id there;
  std::thread::id back;
  const Scheduled work = scheduler.background(
      WorkPriority::utility,
      [&there] {
        there = std::this_thread::get_id();
        return std::string("result");
      },
      [&](const std::string& result) {
        back = std::this_thread::get_id();
        log.push_back(result);
        loop.quit();
      });
  EXPECT_THAT(log, IsEmpty());
  loop.run();
  EXPECT_NE(there, here);
  EXPECT_EQ(back, here);
  EXPECT_THAT(log, ElementsAre("result"));
}

TEST_F(LinuxEventLoopTest, CancelledWorkRunsAndTellsNobody) {
  std::atomic<bool> ran = false;
  Scheduled work = scheduler.background(
      WorkPriority::utility, [&] { ran = true; }, note("cancelled"));
  work.cancel();
  // The thread that takes this one takes the other before it.
  const Scheduled last = scheduler.background(
      WorkPriority::utility,
      [&] {
        while (!ran) std::this_thread::yield();
      },
      quit());
  loop.run();
  EXPECT_TRUE(ran);
  EXPECT_THAT(log, IsEmpty());
}

struct ThreadRank {
  int nice = 0;
  IoPriority io = 0;
};

ThreadRank ownRank() {
  const auto thread = static_cast<id_t>(::syscall(SYS_gettid));
  return {.nice = ::getpriority(PRIO_PROCESS, thread), .io = ioPriority(0).value_or(-1)};
}

TEST_F(LinuxEventLoopTest, UtilityWorkGivesWayToEverythingElse) {
  const ThreadRank main = ownRank();
  ThreadRank utility;
  ThreadRank user;
  const Scheduled first =
      scheduler.background(WorkPriority::utility, ownRank, [&](ThreadRank rank) {
        utility = rank;
        note("utility")();
      });
  const Scheduled second =
      scheduler.background(WorkPriority::userInitiated, ownRank, [&](ThreadRank rank) {
        user = rank;
        note("user")();
      });
  while (log.size() < 2) sd_event_run(loop.event(), UINT64_MAX);
  EXPECT_GT(utility.nice, main.nice);
  EXPECT_EQ(utility.io, kIdleIoPriority);
  EXPECT_EQ(user.nice, main.nice);
  EXPECT_EQ(user.io, main.io);
  EXPECT_EQ(ownRank().nice, main.nice);
}

TEST_F(LinuxEventLoopTest, MoreWorkThanThreadsAllGetsDone) {
  int done = 0;
  std::vector<Scheduled> works;
  for (int i = 0; i < 100; ++i) {
    works.push_back(scheduler.background(
        WorkPriority::utility, [] {},
        [&] {
          if (++done == 100) loop.quit();
        }));
  }
  loop.run();
  EXPECT_EQ(done, 100);
}

// What was asked for and never came is let go on the thread that asked.
TEST_F(LinuxEventLoopTest, WithoutAThreadToBeHadTheWorkIsDoneAllTheSame) {
  pthread_attr_t usual;
  ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
  pthread_attr_t tooLarge;
  ::pthread_attr_init(&tooLarge);
  constexpr std::size_t kNoRoomForIt = std::size_t{1} << 47;  // bytes of stack
  ::pthread_attr_setstacksize(&tooLarge, kNoRoomForIt);
  ASSERT_EQ(::pthread_setattr_default_np(&tooLarge), 0);
  const auto onWhich = [] { return std::this_thread::get_id(); };
  const Scheduled done =
      scheduler.background(WorkPriority::utility, onWhich, [&](std::thread::id where) {
        log.push_back(where == std::this_thread::get_id() ? "here" : "elsewhere");
        loop.quit();
      });
  ::pthread_setattr_default_np(&usual);
  ::pthread_attr_destroy(&usual);
  ::pthread_attr_destroy(&tooLarge);
  EXPECT_THAT(log, IsEmpty());
  loop.run();
  EXPECT_THAT(log, ElementsAre("here"));

  const Scheduled next =
      scheduler.background(WorkPriority::utility, onWhich, [&](std::thread::id where) {
        log.push_back(where == std::this_thread::get_id() ? "here" : "elsewhere");
      });
  const Scheduled end = scheduler.after(60, quit());
  while (log.size() < 2) loop.turn();
  EXPECT_THAT(log, ElementsAre("here", "elsewhere"));
}

TEST(LinuxEventLoopEndTest, RunningWorkIsWaitedForAndTheRestIsDropped) {
  const auto here = std::this_thread::get_id();
  std::atomic<int> ran = 0;
  bool called = false;
  std::thread::id letGoOn;
  {
    LinuxEventLoop loop;
    std::atomic<bool> begun = false;
    struct Held {
      std::thread::id* letGoOn;
      ~Held() { *letGoOn = std::this_thread::get_id(); }
    };
    auto held = std::make_shared<Held>(Held{&letGoOn});
    loop.scheduler()
        .background(
            WorkPriority::utility,
            [&] {
              begun = true;
              ++ran;
            },
            [&called, held] { called = true; })
        .detach();
    held.reset();
    while (!begun) std::this_thread::yield();
  }
  EXPECT_EQ(ran, 1);
  EXPECT_FALSE(called);
  EXPECT_EQ(letGoOn, here);
}

TEST_F(LinuxEventLoopTest, EachSignalEndsTheRunInTheOrderlyWay) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    LinuxEventLoop ended;
    int endings = 0;
    ended.onEnd([&] { ++endings; });
    ASSERT_EQ(::kill(::getpid(), signal), 0);
    ended.run();
    EXPECT_EQ(endings, 1) << signal;
  }
}

TEST_F(LinuxEventLoopTest, QuitEndsItInTheSameWayInTheOrderGiven) {
  loop.onEnd(note("first"));
  loop.onEnd(note("second"));
  const Scheduled timer = scheduler.after(0, quit());
  loop.run();
  EXPECT_THAT(log, ElementsAre("first", "second"));
}

TEST_F(LinuxEventLoopTest, WorkerThreadsLeaveSignalsToTheMainThread) {
  bool isBlocked = false;
  const Scheduled work = scheduler.background(
      WorkPriority::userInitiated,
      [] {
        sigset_t blocked;
        ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        return ::sigismember(&blocked, SIGTERM) == 1 && ::sigismember(&blocked, SIGINT) == 1 &&
               ::sigismember(&blocked, SIGHUP) == 1;
      },
      [&](bool blocked) {
        isBlocked = blocked;
        loop.quit();
      });
  loop.run();
  EXPECT_TRUE(isBlocked);
}

bool isBlockedHere(int signal) {
  sigset_t blocked;
  ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  return ::sigismember(&blocked, signal) == 1;
}

TEST(LinuxEventLoopEndTest, SignalsAreAsBeforeAfterTheLoopAndThoseThatCameLateDoNoHarm) {
  {
    const LinuxEventLoop loop;
    EXPECT_TRUE(isBlockedHere(SIGTERM));
    ::kill(::getpid(), SIGTERM);
  }
  EXPECT_FALSE(isBlockedHere(SIGTERM));
}

#ifndef EMBRIX_SANITIZED
TEST(LinuxEventLoopEndTest, WithoutDescriptorsThereIsNoLoopAndSignalsAreAsBefore) {
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  int refused = 0;
  bool isMade = false;
  for (rlim_t most = 3; !isMade; ++most) {
    ASSERT_LT(most, before.rlim_cur);
    const rlimit few{.rlim_cur = most, .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    try {
      LinuxEventLoop loop;
      isMade = true;
      // One that was made hears that it is to end, and has its clock.
      const Scheduled end = loop.scheduler().after(0, [] { ::raise(SIGTERM); });
      loop.run();
    } catch (const std::system_error& failure) {
      refused += 1;
      EXPECT_EQ(failure.code().value(), EMFILE);
    }
    ::setrlimit(RLIMIT_NOFILE, &before);
    sigset_t blocked;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(::sigismember(&blocked, SIGTERM), 0) << most;
  }
  EXPECT_GE(refused, 4);  // for its events, its signals, its timers and its threads
}
#endif

TEST(LinuxEventLoopEndTest, ASignalThatWasIgnoredStaysIgnored) {
  struct sigaction before {};
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  ASSERT_EQ(::sigaction(SIGHUP, &ignore, &before), 0);
  {
    LinuxEventLoop loop;
    bool hungUp = true;
    ::kill(::getpid(), SIGHUP);
    const Scheduled timer = loop.scheduler().after(0.02, [&] {
      hungUp = false;
      loop.quit();
    });
    loop.run();
    EXPECT_FALSE(hungUp);
  }
  ::sigaction(SIGHUP, &before, nullptr);
}

TEST_F(LinuxEventLoopTest, AnotherLoopCanTurnThisOne) {
  const Scheduled timer = scheduler.after(0.01, note("timer"));
  const Scheduled work = scheduler.background(
      WorkPriority::utility, [] {},
      [&] {
        log.push_back("work");
        ::kill(::getpid(), SIGTERM);
      });
  loop.onEnd(note("end"));
  while (!loop.isOver() || log.size() < 2) {
    pollfd ready = {loop.descriptor(), POLLIN, 0};
    if (!loop.prepare()) {
      ASSERT_EQ(::poll(&ready, 1, 60'000), 1);
    }
    loop.turn();
  }
  loop.end();
  loop.end();
  ASSERT_EQ(log.size(), 3U);
  EXPECT_EQ(log.back(), "end");
}

TEST_F(LinuxEventLoopTest, WhatIsAskedForOnceItIsPreparedIsInTheNextPreparation) {
  const Scheduled farAway = scheduler.after(600, note("never"));
  ASSERT_FALSE(loop.prepare());
  const Scheduled soon = scheduler.after(0.01, note("soon"));
  pollfd ready = {loop.descriptor(), POLLIN, 0};
  while (log.empty()) {
    if (!loop.prepare()) {
      ASSERT_EQ(::poll(&ready, 1, 60'000), 1);
    }
    loop.turn();
  }
  EXPECT_THAT(log, ElementsAre("soon"));
}

TEST_F(LinuxEventLoopTest, TurningItWithNothingToDoReturnsAtOnce) {
  loop.turn();
  loop.turn();
  EXPECT_FALSE(loop.prepare());
  EXPECT_FALSE(loop.isOver());
}

}  // namespace
}  // namespace embrix
