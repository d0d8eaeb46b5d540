// What the user is serving at this moment: each process that listens on a TCP port and is a
// development tool, or at least no application and nothing of the system's. A rule over plain
// facts; any thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "frame/local_server.h"
#include "frame/process_facts.h"
#include "running/system_folders.h"

namespace embrix {

struct LocalServers {
  // One row for each process, however young, ascending by its first port; rows with the same first
  // port keep the order of `facts`. `home` has no slash at its end.
  static std::vector<LocalServer> find(const std::vector<ProcessFacts>& facts,
                                       std::uint32_t currentUser, std::string_view home,
                                       const SystemFolders& systemFolders = {});
};

}  // namespace embrix
