#include "hosts/macos/main_queue_scheduler.h"

#include <pthread/qos.h>
#include <sys/event.h>
#include <sys/qos.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "hosts/macos/clock.h"

namespace embrix {

namespace {

constexpr uintptr_t kTimer = 1;  // its number in the queue

void beginThread(WorkPriority priority) {
  ::pthread_set_qos_class_self_np(
      priority == WorkPriority::utility ? QOS_CLASS_UTILITY : QOS_CLASS_USER_INITIATED, 0);
}

}  // namespace

MainQueueScheduler::MainQueueScheduler()
    : timer_(::kqueue()),
      timerSource_(MainQueueSource::Kind::readable, timer_.number(), [this] { timeCame(); }),
      wakeSource_(MainQueueSource::Kind::told, 0, [this] { scheduler_.turn(); }),
      scheduler_(clockwork()) {}

Clockwork MainQueueScheduler::clockwork() {
  return {.wallTime = [] { return MacClock().wallTime(); },
          .uptime = continuousSeconds,
          .wakeAt = [this](std::optional<double> uptime) { wakeAt(uptime); },
          .wakeNow = [this] { wakeSource_.tell(); },
          .beginThread = beginThread};
}

void MainQueueScheduler::wakeAt(std::optional<double> uptime) const {
  struct kevent change {};
  if (uptime) {
    const double nanoseconds = std::ceil(std::max(*uptime - continuousSeconds(), 0.0) * 1e9);
    EV_SET(&change, kTimer, EVFILT_TIMER, EV_ADD | EV_ONESHOT,
           NOTE_NSECONDS | NOTE_MACH_CONTINUOUS_TIME, static_cast<std::int64_t>(nanoseconds),
           nullptr);
  } else {
    EV_SET(&change, kTimer, EVFILT_TIMER, EV_DELETE, 0, 0, nullptr);
  }
  ::kevent(timer_.number(), &change, 1, nullptr, 0, nullptr);
}

void MainQueueScheduler::timeCame() {
  struct kevent event {};
  const timespec atOnce{};
  ::kevent(timer_.number(), nullptr, 0, &event, 1, &atOnce);
  scheduler_.turn();
}

}  // namespace embrix
