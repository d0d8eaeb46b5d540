// The machine that the program runs on. Implemented by the folder below hosts/ that the build
// chose.
#pragma once

#include <memory>
#include <optional>
#include <string>

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

// What the system knows the program by as an application; absent when it is none, such as a build
// that was not packed.
std::optional<std::string> nativeIdentifier();

// The file that this program was started from; empty when that cannot be told.
std::string nativeProgramPath();

// The settings of the user who runs the program.
std::unique_ptr<SettingsStores> nativeSettings();

}  // namespace embrix
