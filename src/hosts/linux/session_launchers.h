// Programs that start other people's programs: what they start counts as launched by the system.
#pragma once

#include <string_view>

namespace embrix {

// True for the command name of a user's service manager, a login, a display manager or a desktop
// session: a process below one is at the top of its own tree, as a process below launchd is.
// Without this a whole desktop, or everything that a person does over ssh, would be one group.
// `commandName` is the kernel's, cut at 15 bytes.
bool isSessionLauncher(std::string_view commandName);

}  // namespace embrix
