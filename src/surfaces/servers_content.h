// The popover's card of servers: the first dev servers as tiles, and how many more there are. A
// pure reading of a frame. Plain functions; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/local_server.h"
#include "surfaces/menu_item.h"
#include "surfaces/palette.h"

namespace embrix {

struct ServerTileContent {
  static constexpr double kNew = 120;  // seconds that a server counts as new

  std::string id;
  EX::Hue fill = EX::Hue::mint;
  std::string name;
  std::string port;
  std::string age;
  std::string help;
  bool isNew = false;
  std::vector<MenuItem> menu;

  // Of the tile at that place.
  static ServerTileContent of(const LocalServer& server, std::size_t place);

  static constexpr auto fields() {
    using Tile = ServerTileContent;
    return std::tuple{field("id", &Tile::id),       field("fill", &Tile::fill),
                      field("name", &Tile::name),   field("port", &Tile::port),
                      field("age", &Tile::age),     field("help", &Tile::help),
                      field("isNew", &Tile::isNew), field("menu", &Tile::menu)};
  }
  bool operator==(const ServerTileContent&) const = default;
};

struct ServersContent {
  static constexpr std::size_t kShown = 4;

  std::vector<ServerTileContent> tiles;
  std::optional<std::string> tools;  // "+2 tools"; absent without any
  std::optional<std::string> more;   // about dev servers that are not shown; absent without any
  bool hasNone = false;              // no dev server runs, though tools do

  // Absent when there is no server at all.
  static std::optional<ServersContent> of(const std::vector<LocalServer>& servers);

  static bool isDevServer(const LocalServer& server) { return server.symbol == "server.rack"; }
  // By project, or by title where there is none.
  static std::vector<LocalServer> devServers(const std::vector<LocalServer>& servers);

  // The list of tiles is shown by itself.
  static constexpr auto fields() {
    return std::tuple{field("tools", &ServersContent::tools), field("more", &ServersContent::more),
                      field("hasNone", &ServersContent::hasNone)};
  }
  bool operator==(const ServersContent&) const = default;
};

}  // namespace embrix
