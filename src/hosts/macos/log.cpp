#include "hosts/macos/log.h"

#include <os/log.h>

#include <string>

namespace embrix {

void MacLog::error(std::string_view category, std::string_view text) {
  // The system keeps one log for each pair of names and hands it out again.
  const os_log_t log = os_log_create(kSubsystem, std::string(category).c_str());
  os_log_error(log, "%{public}s", std::string(text).c_str());
  os_release(log);
}

}  // namespace embrix
