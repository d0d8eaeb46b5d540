// A scheduler in which time passes, and background work is done, only when the test says so. One
// thread does everything.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "base/scheduler.h"

namespace embrix {

class ManualScheduler final : public Scheduler {
 public:
  double wall = 1'750'000'000;  // seconds since 1970; a test may set it as a user may
  double up = 1000;             // seconds

  double wallTime() override { return wall; }
  double uptime() override { return up; }

  // Lets so much time go by. Callbacks come at their times, earlier before later, those of one
  // moment in the order in which they were asked for; also those that they themselves ask for.
  void advance(double seconds);

  // Lets time go by up to the next callback, and calls back. False when none is to come.
  bool advanceToNext();

  // Does the oldest work that waits, and not yet what follows it. False when none waits but what
  // stands still.
  bool doWork();
  // Calls back for all work that is done.
  void finishWork();
  // All work and what follows it, also what that asks for, until nothing waits.
  void runBackground();

  std::size_t timersWaiting() const { return timers_.size(); }
  std::size_t workWaiting() const { return work_.size(); }
  // Work of this priority stands still, as behind a slow disk; it keeps its place.
  std::optional<WorkPriority> standing;
  // Of everything that was ever asked for, oldest first.
  std::vector<WorkPriority> priorities;

 private:
  struct Timer {
    double due = 0;  // uptime
    std::function<void()> callback;
  };
  struct Work {
    WorkPriority priority = WorkPriority::utility;
    std::function<void()> work;
    std::function<void()> then;
  };

  void runAfter(double seconds, std::function<void()> callback) override;
  void runInBackground(WorkPriority priority, std::function<void()> work,
                       std::function<void()> then) override;

  std::deque<Timer> timers_;  // in the order in which they were asked for
  std::deque<Work> work_;
  std::deque<std::function<void()>> done_;
};

}  // namespace embrix
