// Where the buses of D-Bus listen.
#pragma once

#include <string>

namespace embrix {

// As $DBUS_SYSTEM_BUS_ADDRESS says, or the place that D-Bus itself has for it.
std::string systemBusAddress();

// The bus of the login session: as $DBUS_SESSION_BUS_ADDRESS says, or "bus" in $XDG_RUNTIME_DIR.
// Empty where there is neither.
std::string sessionBusAddress();

}  // namespace embrix
