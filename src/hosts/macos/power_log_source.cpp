#include "hosts/macos/power_log_source.h"

#include "hosts/posix/command_runner.h"

namespace embrix {

std::string MacPowerLogSource::read() {
  return PosixCommandRunner(SpawnManner::native())
      .output("/usr/bin/pmset", {"-g", "log"})
      .value_or("");
}

}  // namespace embrix
