#include <crt_externs.h>
#include <fcntl.h>
#include <unistd.h>

#include "hosts/posix/command_runner.h"

namespace embrix {

SpawnManner SpawnManner::native() {
  return {.leaveFilesBehind = [](posix_spawn_file_actions_t&) {},  // the flag below does
          .flags = POSIX_SPAWN_CLOEXEC_DEFAULT,
          .environment = [] { return *::_NSGetEnviron(); },
          .makePipe =
              [](std::array<int, 2>& ends) {
                if (::pipe(ends.data()) != 0) return false;
                // There is no pipe2() here: a program that another library starts in this moment
                // could keep the writing end, and its end would be waited for as well.
                for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
                return true;
              }};
}

}  // namespace embrix
