// The login session that the program lives in: what it acts on and what it hears from, as against
// the machine that it reads (host.h). A replayed machine has no session, so nothing that is
// replayed ever touches a process of this one. Main thread only.
#pragma once

#include <memory>

#include "base/scheduler.h"
#include "host/action_service.h"
#include "host/application_icons.h"
#include "host/control_center.h"
#include "host/desktop_facts.h"
#include "host/notifier.h"
#include "host/process_control.h"
#include "host/session_events.h"

namespace embrix {

// How another loop, such as a desktop toolkit's, turns this program's in place of its run(): it
// calls prepare(), waits until the descriptor is readable unless that said true, calls turn(), and
// so on until isOver(); then end(), once.
class GuestLoop {
 public:
  virtual ~GuestLoop() = default;

  virtual int descriptor() const = 0;
  virtual bool prepare() = 0;  // whether something is due already; may be called again and again
  virtual void turn() = 0;     // does what is due and never waits
  virtual bool isOver() const = 0;
  virtual void end() = 0;
};

// The main thread's loop, with the scheduler that it turns.
class EventLoop {
 public:
  virtual ~EventLoop() = default;

  virtual Scheduler& scheduler() = 0;

  // Until quit() is called or the program is told to end. Whichever it was, the session's listener
  // (willTerminate) has been told so when this returns. Callbacks run in here. Once.
  virtual void run() = 0;

  virtual void quit() = 0;

  // Null for a loop that turns of itself wherever the main thread waits, and for one that must run
  // by itself.
  virtual GuestLoop* guest() { return nullptr; }
};

struct Session {
  // None is ever null.
  std::unique_ptr<EventLoop> loop;  // outlives the others
  std::unique_ptr<ProcessControl> control;
  std::unique_ptr<Notifier> notifier;
  std::unique_ptr<SessionEvents> events;
  std::unique_ptr<ControlCenter> controls;
  std::unique_ptr<ActionService> actions;
  std::unique_ptr<DesktopFacts> desktop;
  std::unique_ptr<ApplicationIcons> icons;
};

// Nobody to act on and nobody who tells anything: no process is there, what is posted is dropped.
Session absentSession(std::unique_ptr<EventLoop> loop);

}  // namespace embrix
