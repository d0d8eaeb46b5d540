// A small world of processes to act on, with a log of what was done and failures on demand.
#pragma once

#include <cerrno>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "host/process_control.h"

namespace embrix {

class ScriptedProcessControl final : public ProcessControl {
 public:
  std::set<ProcessIdentity> living;
  std::set<ProcessIdentity> background;     // those that are slowed down
  std::set<std::int32_t> stubborn;          // pids that ignore a request to end
  std::map<std::int32_t, int> failing;      // by pid, the errno of every call
  std::map<std::int32_t, int> calmFailing;  // by pid, the errno of calming alone

  // Every call so far: "calm 5-100", "restore 5-100", "terminate 5-100".
  std::vector<std::string> log;

  int calm(const ProcessIdentity& process) override {
    const int error = called("calm", process);
    const auto failure = calmFailing.find(process.pid);
    if (error == 0 && failure != calmFailing.end()) return failure->second;
    if (error == 0) background.insert(process);
    return error;
  }

  int restore(const ProcessIdentity& process) override {
    const int error = called("restore", process);
    if (error == 0) background.erase(process);
    return error;
  }

  int terminate(const ProcessIdentity& process) override {
    const int error = called("terminate", process);
    if (error == 0 && !stubborn.contains(process.pid)) end(process);
    return error;
  }

  void end(const ProcessIdentity& process) {
    living.erase(process);
    background.erase(process);
  }

 private:
  int called(std::string_view call, const ProcessIdentity& process) {
    log.push_back(fmt::format("{} {}-{}", call, process.pid, process.startTime));
    if (const auto failure = failing.find(process.pid); failure != failing.end()) {
      return failure->second;
    }
    return living.contains(process) ? 0 : ESRCH;
  }
};

}  // namespace embrix
