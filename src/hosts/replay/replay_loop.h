// The loop of a run on a recording: nobody waits for anything, and all is done on one thread. Time
// is the recording's. A pause ends as soon as nothing else is to be done, and what it asked for is
// the next tick of the recording, however long after the last one that was taken.
//
// A run ends by itself when the last tick has begun and what follows from it is done; timers that
// are then still to come never do.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <utility>

#include "base/scheduler.h"
#include "host/session.h"
#include "hosts/replay/replayed_moment.h"

namespace embrix {

// Between two ticks the clocks go on by what is waited for, and never past what the next tick
// tells.
class ReplayScheduler final : public Scheduler {
 public:
  // `moment` is the recording's: when it is there now.
  explicit ReplayScheduler(std::function<ReplayedMoment()> moment) : moment_(std::move(moment)) {}

  double wallTime() override;
  double uptime() override;

  // Does the oldest work that waits, and what follows it. False when none waits.
  bool doWork();
  // Calls back for the timer that is next. False when there is none.
  bool skipToTimer();

 private:
  struct Work {
    std::function<void()> work;
    std::function<void()> then;
  };

  void runAfter(double seconds, std::function<void()> callback) override;
  void runInBackground(WorkPriority priority, std::function<void()> work,
                       std::function<void()> then) override;
  ReplayedMoment look();
  double waited(const ReplayedMoment& moment) const;

  std::function<ReplayedMoment()> moment_;
  std::deque<Work> works_;
  std::multimap<double, std::function<void()>> timers_;  // by `time_`
  // Seconds by which timers are put in order. A tick that tells of a later time than was waited for
  // moves it on.
  double time_ = 0;
  double lastTold_ = 0;    // uptime of the recording at the last look
  double timeAtTold_ = 0;  // `time_` when that was told first
  bool hasLooked_ = false;
};

class ReplayLoop final : public EventLoop {
 public:
  // `finished` is the recording's: whether its last tick has begun.
  ReplayLoop(std::function<bool()> finished, std::function<ReplayedMoment()> moment)
      : finished_(std::move(finished)), scheduler_(std::move(moment)) {}

  Scheduler& scheduler() override { return scheduler_; }
  void run() override;
  void quit() override { isOver_ = true; }

 private:
  std::function<bool()> finished_;
  ReplayScheduler scheduler_;
  bool isOver_ = false;
};

}  // namespace embrix
