// Programs run by posix_spawn(), as all systems that have it do it; what they do differently is a
// SpawnManner.
#pragma once

#include <spawn.h>

#include <array>

#include "host/command_runner.h"

namespace embrix {

// What one system does in a way of its own. Plain functions; any thread.
struct SpawnManner {
  // Has the program get none of this process's files but the standard streams.
  void (*leaveFilesBehind)(posix_spawn_file_actions_t& actions);
  // Further flags of posix_spawnattr_setflags().
  int flags = 0;
  char** (*environment)();
  // A pipe that no other program gets; false when there is none to be had.
  bool (*makePipe)(std::array<int, 2>& ends);

  // This system's.
  static SpawnManner native();
};

// Runs programs with this process's environment, less the size of a terminal, and none of its open
// files. Standard input and standard error are /dev/null. Any thread; calls may overlap.
class PosixCommandRunner final : public CommandRunner {
 public:
  explicit PosixCommandRunner(const SpawnManner& manner) : manner_(manner) {}

  // Reads until every process that inherited the output has closed it.
  std::optional<std::string> output(const std::string& program,
                                    const std::vector<std::string>& arguments) override;
  std::optional<std::string> successfulOutput(const std::string& program,
                                              const std::vector<std::string>& arguments) override;

  // The program gets a session of its own, so that closing this program's terminal leaves it be.
  bool start(const std::string& program, const std::vector<std::string>& arguments) override;

 private:
  const SpawnManner manner_;
};

}  // namespace embrix
