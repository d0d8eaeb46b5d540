// The login session that the program lives in: what it acts on and what it hears from, as against
// the machine that it reads (host.h). A replayed machine has no session, so nothing that is
// replayed ever touches a process of this one. Main thread only.
#pragma once

#include <memory>

#include "base/scheduler.h"
#include "host/action_service.h"
#include "host/control_center.h"
#include "host/notifier.h"
#include "host/process_control.h"
#include "host/session_events.h"

namespace embrix {

// The main thread's loop, with the scheduler that it turns.
class EventLoop {
 public:
  virtual ~EventLoop() = default;

  virtual Scheduler& scheduler() = 0;

  // Until quit() is called or the program is told to end. Whichever it was, the session's listener
  // (willTerminate) has been told so when this returns. Callbacks run in here. Once.
  virtual void run() = 0;

  virtual void quit() = 0;
};

struct Session {
  // None is ever null.
  std::unique_ptr<EventLoop> loop;  // outlives the others
  std::unique_ptr<ProcessControl> control;
  std::unique_ptr<Notifier> notifier;
  std::unique_ptr<SessionEvents> events;
  std::unique_ptr<ControlCenter> controls;
  std::unique_ptr<ActionService> actions;
};

// Nobody to act on and nobody who tells anything: no process is there, what is posted is dropped.
Session absentSession(std::unique_ptr<EventLoop> loop);

}  // namespace embrix
