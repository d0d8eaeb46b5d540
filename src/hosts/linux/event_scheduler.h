// The scheduler of a live Linux machine: timers on an sd-event loop, work on threads of its own.
//
// Timers go by the time since boot with suspend counted in (CLOCK_BOOTTIME). The plain monotonic
// clock stands still while the machine sleeps, and a pause of ten seconds that began before the lid
// was closed would then end as long after it was opened.
#pragma once

#include <systemd/sd-event.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "base/descriptor.h"
#include "base/scheduler.h"
#include "hosts/linux/worker_threads.h"

namespace embrix {

class EventScheduler final : public Scheduler {
 public:
  // Callbacks come out of `event`, which outlives this.
  explicit EventScheduler(sd_event* event);
  ~EventScheduler() override;

  double wallTime() override;
  double uptime() override;

 private:
  struct DropSource {
    void operator()(sd_event_source* source) const;
  };
  using Source = std::unique_ptr<sd_event_source, DropSource>;
  using Callback = std::function<void()>;
  struct Work;

  void runAfter(double seconds, Callback callback) override;
  void runInBackground(WorkPriority priority, Callback work, Callback then) override;

  static int timeCame(sd_event_source* source, std::uint64_t due, void* self);
  static int workIsDone(sd_event_source* source, int descriptor, std::uint32_t events, void* self);
  void callDueTimers();
  void armTimer();
  void callForDoneWork();
  void finish(Callback then);

  sd_event* event_;
  Source timer_;
  std::multimap<std::uint64_t, Callback> timers_;  // by microseconds since boot

  Descriptor doneSignal_;  // an eventfd, readable while `done_` holds something
  Source doneSource_;
  std::mutex mutex_;  // for `done_`
  std::vector<Callback> done_;

  // Last, so that they have ended before anything that they use goes.
  WorkerThreads utility_;
  WorkerThreads userInitiated_;
};

}  // namespace embrix
