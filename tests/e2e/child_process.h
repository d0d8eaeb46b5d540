// A program started by a test. It does not outlive the object.
#pragma once

#include <sys/types.h>
#include <chrono>
#include <string>
#include <vector>

namespace embrix {

class ChildProcess {
 public:
  // Its output and its input are /dev/null.
  explicit ChildProcess(const std::vector<std::string>& commandLine);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  pid_t pid() const { return pid_; }

  // Ends it; gives the part of its life that it had a core for, 1 for all of it.
  double end();

 private:
  std::chrono::steady_clock::time_point start_;
  pid_t pid_ = -1;
};

struct Outcome {
  int exitStatus = -1;  // -1 when a signal ended it
  std::string output;
  std::string complaints;  // standard error
};

// Runs the command line to its end with "NAME=value" pairs added to the environment.
Outcome outcomeOf(const std::vector<std::string>& commandLine,
                  const std::vector<std::string>& environment = {});

}  // namespace embrix
