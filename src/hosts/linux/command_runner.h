#pragma once

#include "host/command_runner.h"

namespace embrix {

// Runs programs with this process's environment, less the size of a terminal, and none of its open
// files. Standard input and standard error are /dev/null. Any thread; calls may overlap.
class LinuxCommandRunner final : public CommandRunner {
 public:
  // Reads until every process that inherited the output has closed it.
  std::optional<std::string> output(const std::string& program,
                                    const std::vector<std::string>& arguments) override;
  std::optional<std::string> successfulOutput(const std::string& program,
                                              const std::vector<std::string>& arguments) override;

  // The program gets a session of its own, so that closing this program's terminal leaves it be.
  bool start(const std::string& program, const std::vector<std::string>& arguments) override;
};

}  // namespace embrix
