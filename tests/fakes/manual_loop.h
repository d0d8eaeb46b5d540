// An event loop whose time passes only while it runs, and as fast as it can.
#pragma once

#include <functional>

#include "fakes/manual_scheduler.h"
#include "host/session.h"

namespace embrix {

class ManualLoop final : public EventLoop {
 public:
  // The run is told to end after so many seconds, as by a signal.
  double secondsToEnd = 60;
  std::function<void()> onSecond = [] {};  // before each of them goes by
  std::function<void()> onEnd = [] {};     // before run() returns

  ManualScheduler& scheduler() override { return scheduler_; }

  void run() override {
    for (double second = 0; second < secondsToEnd && !isOver_; ++second) {
      scheduler_.runBackground();
      onSecond();
      scheduler_.advance(1);
    }
    scheduler_.runBackground();
    onEnd();
  }

  void quit() override { isOver_ = true; }

 private:
  ManualScheduler scheduler_;
  bool isOver_ = false;
};

}  // namespace embrix
