#include "hosts/macos/clock.h"

#include <mach/mach_time.h>
#include <sys/event.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

namespace embrix {

namespace {

// One timer of the kernel, which, unlike nanosleep(), does not stand still over a suspend.
class SuspendProofTimer {
 public:
  SuspendProofTimer() : queue_(::kqueue()) {}
  ~SuspendProofTimer() {
    if (queue_ >= 0) ::close(queue_);
  }
  SuspendProofTimer(const SuspendProofTimer&) = delete;
  SuspendProofTimer& operator=(const SuspendProofTimer&) = delete;

  // Returns when the time is over, or earlier. False when it cannot wait at all.
  bool wait(double seconds) const {
    struct kevent change {};
    EV_SET(&change, 1, EVFILT_TIMER, EV_ADD | EV_ONESHOT, NOTE_NSECONDS | NOTE_MACH_CONTINUOUS_TIME,
           static_cast<std::int64_t>(seconds * 1e9), nullptr);
    struct kevent event {};
    return queue_ >= 0 && ::kevent(queue_, &change, 1, &event, 1, nullptr) >= 0;
  }

 private:
  int queue_;
};

void sleepAwakeTime(double seconds) {
  timespec time{};
  time.tv_sec = static_cast<time_t>(seconds);
  time.tv_nsec = static_cast<long>((seconds - static_cast<double>(time.tv_sec)) * 1e9);
  ::nanosleep(&time, nullptr);
}

}  // namespace

double MacClock::uptime() {
  return static_cast<double>(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW)) / 1e9;
}

double MacClock::wallTime() {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void MacClock::sleep(double seconds) {
  if (!(seconds > 0)) return;
  // A hundred years keep the numbers in range.
  const double until = continuousSeconds() + std::min(seconds, 3.2e9);
  const SuspendProofTimer timer;
  for (double left = until - continuousSeconds(); left > 0; left = until - continuousSeconds()) {
    if (!timer.wait(left)) sleepAwakeTime(left);
  }
}

double continuousSeconds() {
  return static_cast<double>(::mach_continuous_time()) * machineTimeUnitNS() / 1e9;
}

double machineTimeUnitNS() {
  mach_timebase_info_data_t base{};
  if (::mach_timebase_info(&base) != KERN_SUCCESS || base.denom == 0) return 1;
  return static_cast<double>(base.numer) / base.denom;
}

}  // namespace embrix
