// What the machine and the desktop tell a program that runs for the whole session. Main thread
// only.
#pragma once

#include <functional>

namespace embrix {

class SessionEvents {
 public:
  struct Listener {
    std::function<void()> willSleep;      // the machine sleeps as soon as this returns
    std::function<void()> didWake;        // the machine is awake again
    std::function<void()> willTerminate;  // the program ends as soon as this returns
    // Other code of the application, such as the declarations of its shortcuts, asks for the
    // dashboard.
    std::function<void()> openConsole = nullptr;
  };

  virtual ~SessionEvents() = default;

  // From now on; a second listener takes the place of the first. A system that does not tell of an
  // event never calls for it.
  virtual void listen(Listener listener) = 0;
};

}  // namespace embrix
