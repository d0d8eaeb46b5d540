// The main thread's loop on a Mac: the run loop, which also serves the main queue. Where an
// application runs that loop itself, run() is not called, and everything else works all the same.
//
// SIGTERM, SIGINT and SIGHUP end it as quit() does, or the application in its own way, but one that
// was ignored when the loop was made. These signals are blocked from then on, and threads started
// later inherit it: there must be no other thread before.
#pragma once

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

#include "host/session.h"
#include "hosts/macos/main_queue_scheduler.h"
#include "hosts/macos/main_queue_source.h"

namespace embrix {

class MacEventLoop final : public EventLoop {
 public:
  MacEventLoop();
  ~MacEventLoop() override;
  MacEventLoop(const MacEventLoop&) = delete;
  MacEventLoop& operator=(const MacEventLoop&) = delete;

  Scheduler& scheduler() override { return scheduler_->scheduler(); }
  void run() override;
  void quit() override;

  // Called once, before run() returns or the application ends, in the order given.
  void onEnd(std::function<void()> callback) { endings_.push_back(std::move(callback)); }
  void end();

 private:
  void takeSignals();
  void isToldToEnd();

  sigset_t taken_{};  // the signals that end the loop
  std::unique_ptr<MainQueueScheduler> scheduler_;
  std::vector<std::unique_ptr<MainQueueSource>> signals_;
  std::vector<std::function<void()>> endings_;
  bool isRunning_ = false;
  bool isOver_ = false;
};

}  // namespace embrix
