// The controls of a Linux desktop: nobody there has one of this program's yet. Whoever writes one
// (a panel's applet, a script) listens to the signal that is emitted here, StateChanged of
// app.embrix.Controls, and reads the published state again when it comes. Without a bus nothing
// happens.
#pragma once

#include <memory>

#include "host/control_center.h"
#include "hosts/linux/bus_connection.h"

namespace embrix {

class DesktopControls final : public ControlCenter {
 public:
  // `session`: the bus of the login session.
  explicit DesktopControls(std::shared_ptr<BusConnection> session);

  void reloadAllControls() override;

 private:
  std::shared_ptr<BusConnection> session_;
  BusSlot object_;
};

}  // namespace embrix
