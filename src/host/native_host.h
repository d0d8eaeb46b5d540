// The machine that the program runs on. Implemented by the folder below hosts/ that the build
// chose.
#pragma once

#include <memory>

#include "host/host.h"
#include "host/log.h"
#include "host/session.h"
#include "host/settings_store.h"

namespace embrix {

// Every source of this machine; absent ones where it has nothing to say.
Host nativeHost();

// The login session that the program runs in. One at a time.
Session nativeSession();

// The log of this system.
std::unique_ptr<Log> nativeLog();

// The settings of the user who runs the program.
std::unique_ptr<SettingsStores> nativeSettings();

}  // namespace embrix
