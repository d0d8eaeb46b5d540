// A program started by a test. It does not outlive the object.
#pragma once

#include <sys/types.h>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/descriptor.h"

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

// A program that runs until the test has it end, and tells something meanwhile. It does not outlive
// the object.
class RunningProgram {
 public:
  explicit RunningProgram(const std::vector<std::string>& commandLine,
                          const std::vector<std::string>& environment = {});
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  ~RunningProgram();

  pid_t pid() const { return pid_; }

  // The next line of its output, without its end; waits for it. Absent when there is no more.
  std::optional<std::string> readLine();
  // Nobody reads its output any more.
  void closeOutput() { output_.close(); }

  void signal(int number) const;
  // Waits until it ends by itself. The output is what was not read as lines.
  Outcome end();

 private:
  pid_t pid_ = -1;
  Descriptor output_;
  Descriptor complaints_;
  std::string unread_;
};

}  // namespace embrix
