#include "surfaces/servers_content.h"

#include <gtest/gtest.h>

#include "worlds/popover_world.h"

namespace embrix {
namespace {

std::vector<LocalServer> devServers(int count) {
  std::vector<LocalServer> servers;
  for (int i = 0; i < count; ++i) {
    servers.push_back(devServer(std::string(1, static_cast<char>('a' + i)), 10 + i, 3000 + i));
  }
  return servers;
}

TEST(ServersContentTest, WithoutServersThereIsNoCard) {
  EXPECT_FALSE(ServersContent::of({}));
}

TEST(ServersContentTest, FourServersShowWithoutMore) {
  const auto content = ServersContent::of(devServers(4));
  ASSERT_TRUE(content);
  EXPECT_EQ(content->tiles.size(), 4u);
  EXPECT_FALSE(content->more);
  EXPECT_FALSE(content->tools);
}

TEST(ServersContentTest, OfFiveServersFourShowAndOneIsMore) {
  const auto content = ServersContent::of(devServers(5));
  ASSERT_TRUE(content);
  EXPECT_EQ(content->tiles.size(), 4u);
  EXPECT_EQ(content->more, "+1 more");
}

TEST(ServersContentTest, ToolsAreCounted) {
  auto servers = devServers(6);
  servers.push_back(toolServer(90));
  EXPECT_EQ(ServersContent::of(servers)->tools, "+1 tool");
  EXPECT_EQ(ServersContent::of(servers)->more, "+2 more");
  servers.push_back(toolServer(91));
  EXPECT_EQ(ServersContent::of(servers)->tools, "+2 tools");
}

TEST(ServersContentTest, OnlyToolsLeaveAWord) {
  const auto content = ServersContent::of({toolServer(90)});
  ASSERT_TRUE(content);
  EXPECT_TRUE(content->hasNone);
  EXPECT_TRUE(content->tiles.empty());
}

TEST(ServersContentTest, SortsByProjectOrTitle) {
  LocalServer nameless = devServer("", 3, 5000);
  nameless.project = std::nullopt;
  nameless.title = "http.server";
  const auto content =
      ServersContent::of({devServer("trailmix", 1, 5173), nameless, devServer("Shop", 2, 3000)});
  EXPECT_EQ(content->tiles[0].name, "Shop");
  EXPECT_EQ(content->tiles[1].name, "http.server");
  EXPECT_EQ(content->tiles[2].name, "trailmix");
}

TEST(ServersContentTest, TilesTakeTheirColoursInTurn) {
  const auto content = ServersContent::of(devServers(4));
  EXPECT_EQ(content->tiles[0].fill, EX::Hue::mint);
  EXPECT_EQ(content->tiles[1].fill, EX::Hue::lavender);
  EXPECT_EQ(content->tiles[2].fill, EX::Hue::yellow);
  EXPECT_EQ(content->tiles[3].fill, EX::Hue::coralSoft);
}

TEST(ServersContentTest, ATileTellsItsFirstPortAndItsAge) {
  LocalServer server = devServer("shop", 1, 3000);
  server.ports = {3000, 3001};
  server.process.directory = "/Users/me/code/shop";
  const auto tile = ServerTileContent::of(server, 0);
  EXPECT_EQ(tile.port, ":3000");
  EXPECT_EQ(tile.age, "up 2h");
  EXPECT_EQ(tile.help, "Open http://localhost:3000 · vite dev");
  EXPECT_EQ(labelsOf(tile.menu), (std::vector<std::string>{"Copy URL", "Show Folder in Finder"}));
}

TEST(ServersContentTest, AServerIsNewForTwoMinutes) {
  LocalServer server = devServer("shop", 1, 3000);
  server.process.uptime = 119.9;
  EXPECT_TRUE(ServerTileContent::of(server, 0).isNew);
  server.process.uptime = 120;
  EXPECT_FALSE(ServerTileContent::of(server, 0).isNew);
}

TEST(ServersContentTest, AServerWithoutPortsHasNothingToOpen) {
  LocalServer server = devServer("shop", 1, 3000);
  server.ports.clear();
  const auto tile = ServerTileContent::of(server, 0);
  EXPECT_EQ(tile.port, "");
  EXPECT_EQ(tile.help, "");
  EXPECT_TRUE(tile.menu.empty());
}

}  // namespace
}  // namespace embrix
