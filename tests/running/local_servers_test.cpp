#include "running/local_servers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "facts.h"
#include "running/forgotten_finder.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<LocalServer> find(const std::vector<ProcessFacts>& processes) {
  return LocalServers::find(processes, kUser, kHome);
}

TEST(LocalServersTest, NothingGivesNothing) {
  EXPECT_THAT(find({}), IsEmpty());
}

TEST(LocalServersTest, AServerThatHasJustStartedIsListed) {
  auto process = node(10, 1, "a.js");
  process.ports = {3000};
  process.uptime = 0;
  EXPECT_THAT(find({process}), SizeIs(1));
  EXPECT_THAT(ForgottenFinder::find({process}, kUser, kHome), IsEmpty());
}

TEST(LocalServersTest, AnHourOldServerIsForgottenAsWell) {
  auto process = node(10, 1, "a.js");
  process.ports = {3000};
  process.uptime = 3600;
  EXPECT_THAT(find({process}), SizeIs(1));
  EXPECT_THAT(ForgottenFinder::find({process}, kUser, kHome), SizeIs(1));
}

TEST(LocalServersTest, OnlyTheUsersListenersAreServers) {
  EXPECT_THAT(find({node(10, 1, "a.js")}), IsEmpty());
  EXPECT_THAT(find({facts({.pid = 10, .path = "/opt/x", .ports = {80}, .uid = 0})}), IsEmpty());
}

struct Place {
  const char* label;
  Told told;
  std::optional<ForgottenFinder::Description> expected;
};

TEST(LocalServersTest, WhatIsListedAndUnderWhichTitle) {
  const std::vector<Place> cases = {
      {"a runtime in a system folder",
       {.pid = 10, .path = "/usr/local/bin/node", .ports = {3000}},
       std::nullopt},
      {"a runtime from a package manager",
       {.pid = 10,
        .path = "/opt/homebrew/bin/node",
        .arguments = {"node", "a.js"},
        .ports = {3000}},
       {{"a.js", "server.rack"}}},
      {"the system's folder", {.pid = 10, .path = "/System/x", .ports = {80}}, std::nullopt},
      {"the vendor's folder", {.pid = 10, .path = "/Library/Apple/x", .ports = {80}}, std::nullopt},
      {"the administrator's folder", {.pid = 10, .path = "/sbin/x", .ports = {80}}, std::nullopt},
      {"the shells' folder", {.pid = 10, .path = "/bin/x", .ports = {80}}, std::nullopt},
      {"nobody knows it",
       {.pid = 10, .path = "/Users/me/bin/foo", .ports = {80}},
       {{"foo", "server.rack"}}},
      {"an application",
       {.pid = 10, .path = "/Applications/Foo.app/Contents/MacOS/foo", .ports = {80}},
       std::nullopt},
      {"a known tool inside an application",
       {.pid = 10, .path = "/Applications/D.app/MacOS/com.docker.backend", .ports = {80}},
       {{"Docker VM", "shippingbox"}}},
      {"no path, known",
       {.pid = 10, .ports = {5037}, .name = "adb"},
       {{"Android debug bridge (adb)", "cable.connector"}}},
      {"no path, unknown", {.pid = 10, .ports = {80}, .name = "foo"}, {{"foo", "server.rack"}}},
      {"a shell that listens",
       {.pid = 10, .path = "/opt/bin/zsh", .ports = {80}},
       {{"zsh", "server.rack"}}},
  };
  for (const Place& place : cases) {
    const auto servers = find({facts(place.told)});
    ASSERT_EQ(servers.size(), place.expected ? 1U : 0U) << place.label;
    if (servers.empty()) continue;
    EXPECT_EQ(servers[0].title, place.expected->title) << place.label;
    EXPECT_EQ(servers[0].symbol, place.expected->symbol) << place.label;
  }
}

TEST(LocalServersTest, ARowHoldsItsProcess) {
  auto process = node(10, 1, "a.js");
  process.directory = "/Users/me/code/shop";
  process.ports = {3000, 9229};
  process.exposedPorts = {9229};
  const auto servers = find({process});
  ASSERT_THAT(servers, SizeIs(1));
  EXPECT_EQ(servers[0].project, "shop");
  EXPECT_THAT(servers[0].ports, ElementsAre(3000, 9229));
  EXPECT_EQ(servers[0].process, process);
  EXPECT_EQ(servers[0].id(), process.id);
}

TEST(LocalServersTest, EachProcessIsARow) {
  auto parent = node(10, 1, "a.js");
  auto child = node(11, 10, "a.js");
  parent.ports = {3000};
  child.ports = {3001};
  EXPECT_THAT(find({parent, child}), SizeIs(2));
}

TEST(LocalServersTest, RowsAscendByTheirFirstPort) {
  const auto listener = [](std::int32_t pid, std::vector<int> ports) {
    return facts({.pid = pid, .path = "/Users/me/bin/foo", .ports = std::move(ports)});
  };
  const auto servers = find({listener(10, {8080}), listener(11, {3000, 9999}), listener(12, {5173}),
                             listener(9, {3000})});
  std::vector<std::int32_t> pids;
  for (const LocalServer& server : servers) pids.push_back(server.process.pid);
  EXPECT_THAT(pids, ElementsAre(11, 9, 12, 10));
}

TEST(LocalServersTest, TheAddressIsThatOfTheFirstPort) {
  auto process = node(10, 1, "a.js");
  process.ports = {3000, 9229};
  const auto servers = find({process});
  ASSERT_THAT(servers, SizeIs(1));
  EXPECT_EQ(servers[0].url(), "http://localhost:3000");
  EXPECT_EQ(LocalServer{}.url(), std::nullopt);
}

}  // namespace
}  // namespace embrix
