#include <fcntl.h>
#include <unistd.h>

#include "hosts/posix/command_runner.h"

namespace embrix {

SpawnManner SpawnManner::native() {
  return {
      .leaveFilesBehind =
          [](posix_spawn_file_actions_t& actions) {
            ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
          },
      .flags = 0,
      .environment = [] { return environ; },
      .makePipe = [](std::array<int, 2>& ends) { return ::pipe2(ends.data(), O_CLOEXEC) == 0; }};
}

}  // namespace embrix
