// The scheduler of a live Linux machine, turned by an sd-event loop. Main thread only.
//
// Timers go by the time since boot with suspend counted in (CLOCK_BOOTTIME). The plain monotonic
// clock stands still while the machine sleeps, and a pause of ten seconds that began before the lid
// was closed would then end as long after it was opened.
#pragma once

#include <systemd/sd-event.h>

#include <memory>
#include <optional>

#include "base/descriptor.h"
#include "base/live_scheduler.h"

namespace embrix {

class EventScheduler {
 public:
  // Callbacks come out of `event`, which outlives this. Throws std::system_error without
  // descriptors or memory for it.
  explicit EventScheduler(sd_event* event);
  ~EventScheduler();
  EventScheduler(const EventScheduler&) = delete;
  EventScheduler& operator=(const EventScheduler&) = delete;

  Scheduler& scheduler() { return scheduler_; }

 private:
  struct DropSource {
    void operator()(sd_event_source* source) const;
  };
  using Source = std::unique_ptr<sd_event_source, DropSource>;

  Clockwork clockwork();
  void wakeAt(std::optional<double> uptime);

  Source timer_;
  Descriptor wake_;  // an eventfd, readable while work is done that nobody was called for
  Source wakeSource_;
  LiveScheduler scheduler_;  // last: its threads use the rest
};

}  // namespace embrix
