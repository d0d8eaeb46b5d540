#include "hosts/linux/clock.h"

#include <gtest/gtest.h>
#include <time.h>

#include <limits>

namespace embrix {
namespace {

double secondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

TEST(LinuxClockTest, UptimeCountsSuspend) {
  LinuxClock clock;
  const double before = secondsOf(CLOCK_BOOTTIME);
  const double uptime = clock.uptime();
  EXPECT_LE(before, uptime);
  EXPECT_LE(uptime, secondsOf(CLOCK_BOOTTIME));
}

TEST(LinuxClockTest, WallTimeIsSecondsSince1970) {
  LinuxClock clock;
  const double before = secondsOf(CLOCK_REALTIME);
  const double now = clock.wallTime();
  EXPECT_LE(before, now);
  EXPECT_LE(now, secondsOf(CLOCK_REALTIME));
}

TEST(LinuxClockTest, AwakeSecondsDoNotCountSuspend) {
  const double before = secondsOf(CLOCK_MONOTONIC);
  const double now = awakeSeconds();
  EXPECT_LE(before, now);
  EXPECT_LE(now, secondsOf(CLOCK_MONOTONIC));
}

TEST(LinuxClockTest, ASleepLastsAtLeastAsLongAsAsked) {
  LinuxClock clock;
  const double before = clock.uptime();
  clock.sleep(0.01);
  EXPECT_GE(clock.uptime() - before, 0.0099);
}

TEST(LinuxClockTest, NoTimeIsNoSleep) {
  LinuxClock clock;
  for (const double seconds : {0.0, -1.0, -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
    clock.sleep(seconds);  // returns
  }
}

}  // namespace
}  // namespace embrix
