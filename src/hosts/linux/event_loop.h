// The main thread's loop on a live Linux machine, an sd-event loop.
//
// SIGTERM, SIGINT and SIGHUP end it as quit() does, but one that was ignored when the loop was
// made, as nohup and shells in the background arrange it. From the making of the loop to its end
// these signals are blocked, and threads started in that time inherit it: there must be no other
// thread before.
#pragma once

#include <systemd/sd-event.h>

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

#include "host/session.h"
#include "hosts/linux/event_scheduler.h"

namespace embrix {

class LinuxEventLoop final : public EventLoop, public GuestLoop {
 public:
  // Throws std::system_error when the system has no descriptors or no memory for it: there is
  // nothing then that a program that goes on could do.
  LinuxEventLoop();
  ~LinuxEventLoop() override;
  LinuxEventLoop(const LinuxEventLoop&) = delete;
  LinuxEventLoop& operator=(const LinuxEventLoop&) = delete;

  Scheduler& scheduler() override { return scheduler_->scheduler(); }
  void run() override;
  void quit() override { isOver_ = true; }
  GuestLoop* guest() override { return this; }

  // Called once, when the loop has ended and before run() returns, in the order given.
  void onEnd(std::function<void()> callback) { endings_.push_back(std::move(callback)); }

  // What the descriptors and buses of the session are attached to.
  sd_event* event() const { return event_.get(); }

  // As a guest of another loop.
  int descriptor() const override { return sd_event_get_fd(event_.get()); }
  bool prepare() override;
  void turn() override;
  bool isOver() const override { return isOver_; }
  void end() override;

 private:
  struct DropEvent {
    void operator()(sd_event* event) const { sd_event_unref(event); }
  };

  void takeSignals();

  sigset_t taken_{};  // the signals that end the loop
  std::unique_ptr<sd_event, DropEvent> event_;
  std::unique_ptr<EventScheduler> scheduler_;
  std::vector<std::function<void()>> endings_;
  bool isOver_ = false;
};

}  // namespace embrix
