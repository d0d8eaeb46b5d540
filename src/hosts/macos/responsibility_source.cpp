#include "hosts/macos/responsibility_source.h"

#include <dlfcn.h>

namespace embrix {

MacResponsibilitySource::MacResponsibilitySource()
    : lookUp_(reinterpret_cast<pid_t (*)(pid_t)>(
          ::dlsym(RTLD_DEFAULT, "responsibility_get_pid_responsible_for_pid"))) {}

std::optional<std::int32_t> MacResponsibilitySource::responsiblePID(std::int32_t pid) {
  if (lookUp_ == nullptr) return std::nullopt;
  return lookUp_(pid);
}

}  // namespace embrix
