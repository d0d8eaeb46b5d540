// One look at everything that the user has running: what was left running, and what is served.
// It collects the slow facts where they can matter, and hands them to the rules. Sampling thread
// only.
#pragma once

#include <vector>

#include "frame/forgotten_item.h"
#include "frame/local_server.h"
#include "frame/process_sample.h"
#include "host/user_facts.h"
#include "running/simulator_finder.h"
#include "running/system_folders.h"
#include "sampling/process_details_reader.h"

namespace embrix {

struct UserProcessScan {
  struct Result {
    std::vector<ForgottenItem> forgotten;  // simulators first, then tools
    std::vector<LocalServer> servers;

    bool operator==(const Result&) const = default;
  };

  // `samples` are all of the tick's; `now` is in seconds since 1970. Only processes of the user
  // with a path outside the system's folders are asked for details, and `details` forgets all
  // others.
  static Result run(const std::vector<ProcessSample>& samples, const UserFacts& user,
                    const SystemFolders& systemFolders, ProcessDetailsReader& details,
                    const SimulatorFinder::DeviceReader& device, double now);
};

}  // namespace embrix
