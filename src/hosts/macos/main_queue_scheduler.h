// The scheduler of a live Mac, turned by the main queue. Main thread only.
//
// Timers go by the continuous clock, which counts on while the machine sleeps; the queues' own
// timers stand still over a sleep.
#pragma once

#include <optional>

#include "base/descriptor.h"
#include "base/live_scheduler.h"
#include "hosts/macos/main_queue_source.h"

namespace embrix {

class MainQueueScheduler {
 public:
  MainQueueScheduler();
  MainQueueScheduler(const MainQueueScheduler&) = delete;
  MainQueueScheduler& operator=(const MainQueueScheduler&) = delete;

  Scheduler& scheduler() { return scheduler_; }

 private:
  Clockwork clockwork();
  void wakeAt(std::optional<double> uptime) const;
  void timeCame();

  Descriptor timer_;  // a kernel queue, readable when its one timer has come
  MainQueueSource timerSource_;
  MainQueueSource wakeSource_;
  LiveScheduler scheduler_;  // last: its threads use the rest
};

}  // namespace embrix
