#include "hosts/linux/clock.h"

#include <time.h>

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace embrix {

namespace {

double secondsOf(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

double LinuxClock::uptime() {
  return secondsOf(CLOCK_BOOTTIME);
}

double LinuxClock::wallTime() {
  return secondsOf(CLOCK_REALTIME);
}

void LinuxClock::sleep(double seconds) {
  if (!(seconds > 0)) return;
  // A hundred years keep the sum in range.
  const double until = uptime() + std::min(seconds, 3.2e9);
  timespec time{};
  time.tv_sec = static_cast<time_t>(until);
  time.tv_nsec = static_cast<long>((until - std::floor(until)) * 1e9);
  while (::clock_nanosleep(CLOCK_BOOTTIME, TIMER_ABSTIME, &time, nullptr) == EINTR) {
  }
}

double awakeSeconds() {
  return secondsOf(CLOCK_MONOTONIC);
}

}  // namespace embrix
