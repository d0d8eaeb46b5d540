#include "running/local_servers.h"

#include <algorithm>

#include "running/forgotten_finder.h"

namespace embrix {

std::vector<LocalServer> LocalServers::find(const std::vector<ProcessFacts>& facts,
                                            std::uint32_t currentUser, std::string_view home,
                                            const SystemFolders& systemFolders) {
  std::vector<LocalServer> servers;
  for (const ProcessFacts& process : facts) {
    if (process.uid != currentUser || process.ports.empty()) continue;
    if (systemFolders.hold(process)) continue;
    auto description = ForgottenFinder::describe(process);
    const bool isApplication = process.path && process.path->find(".app/") != std::string::npos;
    if (!description && isApplication) continue;
    if (!description) description = {process.name, "server.rack"};
    servers.push_back({.title = std::move(description->title),
                       .project = ForgottenFinder::project(process.directory, home),
                       .symbol = std::move(description->symbol),
                       .ports = process.ports,
                       .process = process});
  }
  std::stable_sort(servers.begin(), servers.end(),
                   [](const auto& a, const auto& b) { return a.ports.front() < b.ports.front(); });
  return servers;
}

}  // namespace embrix
