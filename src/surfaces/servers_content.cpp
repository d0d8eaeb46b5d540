#include "surfaces/servers_content.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "base/format.h"

namespace embrix {

namespace {

constexpr std::array kFills = {EX::Hue::mint, EX::Hue::lavender, EX::Hue::yellow,
                               EX::Hue::coralSoft};

const std::string& nameOf(const LocalServer& server) {
  return server.project ? *server.project : server.title;
}

}  // namespace

ServerTileContent ServerTileContent::of(const LocalServer& server, std::size_t place) {
  ServerTileContent tile{.id = server.id().string(),
                         .fill = kFills[place % kFills.size()],
                         .name = nameOf(server),
                         .port = {},
                         .age = fmt::format("up {}", Format::shortAge(server.process.uptime)),
                         .help = {},
                         .isNew = server.process.uptime < kNew,
                         .menu = {}};
  if (!server.ports.empty()) tile.port = fmt::format(":{}", server.ports.front());
  if (const auto url = server.url()) {
    tile.help = fmt::format("Open {} · {}", *url, server.title);
    tile.menu.push_back({.action = "copy", .label = "Copy URL"});
  }
  if (server.process.directory) {
    tile.menu.push_back({.action = "reveal", .label = "Show Folder in Finder"});
  }
  return tile;
}

std::vector<LocalServer> ServersContent::devServers(const std::vector<LocalServer>& servers) {
  std::vector<LocalServer> result;
  std::copy_if(servers.begin(), servers.end(), std::back_inserter(result), isDevServer);
  std::stable_sort(result.begin(), result.end(), [](const LocalServer& a, const LocalServer& b) {
    return nameOf(a) < nameOf(b);
  });
  return result;
}

std::optional<ServersContent> ServersContent::of(const std::vector<LocalServer>& servers) {
  if (servers.empty()) return std::nullopt;
  const auto dev = devServers(servers);
  ServersContent content;
  content.hasNone = dev.empty();
  for (std::size_t i = 0; i < std::min(dev.size(), kShown); ++i) {
    content.tiles.push_back(ServerTileContent::of(dev[i], i));
  }
  if (dev.size() > kShown) content.more = fmt::format("+{} more", dev.size() - kShown);
  const std::size_t tools = servers.size() - dev.size();
  if (tools > 0) content.tools = fmt::format("+{} tool{}", tools, tools == 1 ? "" : "s");
  return content;
}

}  // namespace embrix
