#pragma once

#include <optional>
#include <string>
#include <vector>

namespace embrix {

class CommandRunner {
 public:
  virtual ~CommandRunner() = default;

  // Runs the program with those arguments (its own name is not among them) to its end and gives
  // what it wrote to standard output, any bytes; standard error is thrown away. Absent when it
  // could not be started. The exit status does not matter. Not for the main or the sampling thread.
  virtual std::optional<std::string> output(const std::string& program,
                                            const std::vector<std::string>& arguments) = 0;

  // The same for a program whose words count only when it succeeds: absent too unless its exit
  // status is 0.
  virtual std::optional<std::string> successfulOutput(
      const std::string& program, const std::vector<std::string>& arguments) = 0;

  // Starts the program and does not wait. False when it could not be started.
  virtual bool start(const std::string& program, const std::vector<std::string>& arguments) = 0;
};

}  // namespace embrix
