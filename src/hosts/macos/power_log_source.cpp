#include "hosts/macos/power_log_source.h"

#include "hosts/macos/command_runner.h"

namespace embrix {

std::string MacPowerLogSource::read() {
  return MacCommandRunner().output("/usr/bin/pmset", {"-g", "log"}).value_or("");
}

}  // namespace embrix
