#include "running/local_servers.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "running/forgotten_finder.h"

namespace embrix {

namespace {

// Rows are large: their places are sorted, and each row moves once.
std::vector<LocalServer> byFirstPort(std::vector<LocalServer> servers) {
  std::vector<std::size_t> places(servers.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
    return servers[a].ports.front() < servers[b].ports.front();
  });
  std::vector<LocalServer> sorted;
  sorted.reserve(servers.size());
  for (const std::size_t place : places) sorted.push_back(std::move(servers[place]));
  return sorted;
}

}  // namespace

std::vector<LocalServer> LocalServers::find(const std::vector<ProcessFacts>& facts,
                                            std::uint32_t currentUser, std::string_view home,
                                            const SystemFolders& systemFolders) {
  std::vector<LocalServer> servers;
  for (const ProcessFacts& process : facts) {
    if (process.uid != currentUser || process.ports.empty()) continue;
    if (systemFolders.hold(process)) continue;
    auto description = ForgottenFinder::describe(process);
    const bool isApplication =
        process.path && process.path->view().find(".app/") != std::string_view::npos;
    if (!description && isApplication) continue;
    if (!description) description = {process.name.string(), "server.rack"};
    servers.push_back({.title = std::move(description->title),
                       .project = ForgottenFinder::project(process.directory, home),
                       .symbol = std::move(description->symbol),
                       .ports = process.ports,
                       .process = process});
  }
  return byFirstPort(std::move(servers));
}

}  // namespace embrix
