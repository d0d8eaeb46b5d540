// The toolkit's loop, turning the program's: what a run with windows waits in. Main thread only.
#pragma once

#include <memory>

#include <QObject>
#include <QSocketNotifier>

#include "host/session.h"

namespace embrix {

class ToolkitLoop final : public QObject {
 public:
  // The loop, and the toolkit's application object, outlive this.
  explicit ToolkitLoop(EventLoop& loop);

  // Until the loop or the toolkit's application is told to end; the session's listener has then
  // been told so.
  void run();

 private:
  void prepare();
  void turn();

  EventLoop& loop_;
  GuestLoop* guest_;
  std::unique_ptr<QSocketNotifier> due_;
  bool isTurning_ = false;  // a turn is on its way
};

}  // namespace embrix
