#include "running/forgotten_finder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "facts.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<ForgottenItem> find(const std::vector<ProcessFacts>& processes) {
  return ForgottenFinder::find(processes, kUser, kHome);
}

bool isFound(Told told) {
  return !find({facts(std::move(told))}).empty();
}

Told server(std::string path) {
  return {.pid = 10, .path = std::move(path), .ports = {3000}};
}

TEST(ForgottenFinderTest, NothingGivesNothing) {
  EXPECT_THAT(find({}), IsEmpty());
}

TEST(ForgottenFinderTest, ExactlyAnHourCounts) {
  Told told = server("/opt/homebrew/bin/node");
  told.uptime = 3600;
  EXPECT_TRUE(isFound(told));
  told.uptime = 3599.9;
  EXPECT_FALSE(isFound(told));
}

TEST(ForgottenFinderTest, SixtyOneMinutesAreForgottenFiftyNineAreNot) {
  Told told = server("/opt/homebrew/bin/node");
  told.uptime = 61 * 60;
  EXPECT_TRUE(isFound(told));
  told.uptime = 59 * 60;
  EXPECT_FALSE(isFound(told));
}

TEST(ForgottenFinderTest, UptimeThatIsNoNumberDoesNotCount) {
  Told told = server("/opt/homebrew/bin/node");
  told.uptime = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(isFound(told));
}

TEST(ForgottenFinderTest, AnotherUsersProcessIsNotForgotten) {
  Told told = server("/opt/homebrew/bin/node");
  told.uid = 0;
  EXPECT_FALSE(isFound(told));
}

TEST(ForgottenFinderTest, ShellsAreLeftOutAsTheyAreWritten) {
  for (const char* shell : {"zsh", "bash", "fish", "sh", "login", "tmux", "screen", "ssh-agent"}) {
    EXPECT_FALSE(isFound(server("/opt/homebrew/bin/" + std::string(shell)))) << shell;
  }
  EXPECT_TRUE(isFound(server("/opt/homebrew/bin/ZSH")));
}

TEST(ForgottenFinderTest, WithoutAPathAKnownToolOrAListenerStays) {
  EXPECT_TRUE(isFound({.pid = 10, .name = "adb"}));
  EXPECT_TRUE(isFound({.pid = 10, .ports = {4000}, .name = "foo"}));
  EXPECT_FALSE(isFound({.pid = 10, .name = "foo"}));
}

TEST(ForgottenFinderTest, AKnownToolInASystemFolderIsDropped) {
  EXPECT_FALSE(isFound(server("/usr/local/bin/node")));
  EXPECT_TRUE(isFound(server("/opt/homebrew/bin/node")));
  for (const char* folder : {"/System/", "/usr/", "/Library/Apple/", "/sbin/", "/bin/"}) {
    EXPECT_FALSE(isFound(server(std::string(folder) + "node"))) << folder;
  }
}

TEST(ForgottenFinderTest, SystemFoldersCountAtTheStartOfAPathAlone) {
  EXPECT_TRUE(isFound(server("/Users/me/usr/bin/node")));
  EXPECT_TRUE(isFound(server("/usrlocal/node")));
}

TEST(ForgottenFinderTest, AnUnnamedListenerInsideAnApplicationIsDropped) {
  Told told = server("/Applications/Foo.app/Contents/MacOS/foo");
  EXPECT_FALSE(isFound(told));
  told.arguments = {"foo", "rails server"};
  EXPECT_TRUE(isFound(told));
}

TEST(ForgottenFinderTest, AnUnnamedProgramMustListen) {
  EXPECT_TRUE(isFound(server("/Users/me/bin/foo")));
  EXPECT_FALSE(isFound({.pid = 10, .path = "/Users/me/bin/foo"}));
}

TEST(ForgottenFinderTest, AnUnnamedListenerIsCalledByItsName) {
  const auto items = find({facts({.pid = 10,
                                  .path = "/Users/me/bin/foo",
                                  .directory = "/Users/me/code/shop",
                                  .ports = {9000}})});
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_EQ(items[0].title, "foo");
  EXPECT_EQ(items[0].symbol, "terminal");
  EXPECT_EQ(items[0].project, "shop");
}

TEST(ForgottenFinderTest, ARowHoldsWhatItsProcessesTell) {
  const auto root = facts({.pid = 30,
                           .path = "/opt/homebrew/bin/node",
                           .arguments = {"node", "/w/node_modules/.bin/vite", "dev"},
                           .directory = "/Users/me/code/shop",
                           .ports = {5173, 24678},
                           .uptime = 4000});
  const auto child = facts({.pid = 20,
                            .ppid = 30,
                            .path = "/opt/homebrew/bin/node",
                            .arguments = {"node", "worker.js"},
                            .directory = "/Users/me/code/other",
                            .ports = {3000, 5173},
                            .uptime = 9000});
  const auto items = find({child, root});
  ASSERT_THAT(items, SizeIs(1));
  const ForgottenItem expected{.title = "vite dev",
                               .project = "shop",
                               .symbol = "server.rack",
                               .ports = {3000, 5173, 24678},
                               .uptime = 4000,
                               .root = root,
                               .members = {root, child},
                               .simulatorUDID = std::nullopt};
  EXPECT_EQ(items[0], expected);
  EXPECT_EQ(items[0].id(), root.id);
}

TEST(ForgottenFinderTest, MembersAreTheRootThenTheOthersByPid) {
  const auto items =
      find({node(9, 50, "a.js"), node(50, 1, "a.js"), node(70, 50, "a.js"), node(3, 9, "a.js")});
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_THAT(pidsOf(items[0].members), ElementsAre(50, 3, 9, 70));
}

TEST(ForgottenFinderTest, TheFirstNamedProcessOfAGroupNamesTheRow) {
  // A listener that nobody knows, with a child of the same name that runs a Rails server.
  const auto root = facts({.pid = 10,
                           .path = "/Users/me/bin/foo",
                           .directory = "/Users/me/code/outer",
                           .ports = {4000}});
  auto child = facts({.pid = 11,
                      .ppid = 10,
                      .path = "/Users/me/bin/foo",
                      .arguments = {"foo", "rails server"},
                      .directory = "/Users/me/code/inner"});
  auto items = find({root, child});
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_EQ(items[0].title, "Rails server");
  EXPECT_EQ(items[0].project, "inner");
  EXPECT_EQ(items[0].root.pid, 10);

  child.directory = std::nullopt;
  items = find({root, child});
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_EQ(items[0].project, "outer");
}

TEST(ForgottenFinderTest, ARuntimeFoldsIntoARuntimeAndTheRootNamesTheRow) {
  const auto items = find({node(10, 1, "/w/node_modules/.bin/next"), node(11, 10, "worker.js")});
  EXPECT_THAT(titlesOf(items), ElementsAre("next"));
  const auto mixed = find(
      {node(10, 1, "outer.js"), facts({.pid = 11, .ppid = 10, .path = "/Users/me/.bun/bin/bun"})});
  EXPECT_THAT(titlesOf(mixed), ElementsAre("outer.js"));
}

TEST(ForgottenFinderTest, NpmAsAProcessNameIsNoRuntime) {
  const auto npm = facts({.pid = 10, .path = "/opt/homebrew/bin/npm", .ports = {1234}});
  EXPECT_THAT(titlesOf(find({npm, node(11, 10, "a.js")})), ElementsAre("npm", "a.js"));

  auto namesake = node(11, 10, "a.js");
  namesake.name = "npm";
  EXPECT_THAT(find({npm, namesake}), SizeIs(1));
}

TEST(ForgottenFinderTest, AnUnnamedProcessBelongsToItsParent) {
  const auto esbuild =
      facts({.pid = 11, .ppid = 10, .path = "/w/node_modules/esbuild/bin/esbuild", .ports = {99}});
  const auto items = find({node(10, 1, "a.js"), esbuild});
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_THAT(pidsOf(items[0].members), ElementsAre(10, 11));
  EXPECT_THAT(items[0].ports, ElementsAre(99));
}

TEST(ForgottenFinderTest, NamedProcessesOfDifferentNamesStandAlone) {
  const auto ruby = facts({.pid = 11, .ppid = 10, .path = "/opt/homebrew/bin/ruby"});
  EXPECT_THAT(find({node(10, 1, "a.js"), ruby}), SizeIs(2));
  const auto python = facts(
      {.pid = 11, .ppid = 10, .path = "/opt/homebrew/bin/python3", .arguments = {"", "a.py"}});
  EXPECT_THAT(find({node(10, 1, "a.js"), python}), SizeIs(2));
}

TEST(ForgottenFinderTest, OnlySurvivorsAreParents) {
  // The shell between the two is no survivor, so the walk ends below it.
  const auto shell = facts({.pid = 11, .ppid = 10, .path = "/bin/zsh"});
  auto young = node(20, 1, "b.js");
  young.uptime = 60;
  EXPECT_THAT(find({node(10, 1, "a.js"), shell, node(12, 11, "c.js")}), SizeIs(2));
  EXPECT_THAT(titlesOf(find({young, node(21, 20, "c.js")})), ElementsAre("c.js"));
}

TEST(ForgottenFinderTest, AgentsDisappearWithTheirRuntimes) {
  const auto claude = facts({.pid = 10, .path = "/opt/homebrew/bin/claude"});
  const auto python = facts(
      {.pid = 12, .ppid = 10, .path = "/opt/homebrew/bin/python3.12", .arguments = {"", "m"}});
  const auto ruby = facts({.pid = 13, .ppid = 10, .path = "/opt/homebrew/bin/ruby"});
  EXPECT_THAT(find({claude, node(11, 10, "mcp.js"), python}), IsEmpty());
  EXPECT_THAT(titlesOf(find({claude, ruby})), ElementsAre("Ruby server"));
}

TEST(ForgottenFinderTest, AgentsAreKnownInEveryCase) {
  const auto codex = facts({.pid = 10, .path = "/opt/homebrew/bin/Codex"});
  EXPECT_THAT(find({codex, node(11, 10, "mcp.js")}), IsEmpty());
}

TEST(ForgottenFinderTest, AnAgentUnderAnotherAgentIsDroppedByItself) {
  const auto claude = facts({.pid = 10, .path = "/opt/homebrew/bin/claude"});
  const auto codex = facts({.pid = 11, .ppid = 10, .path = "/opt/homebrew/bin/codex"});
  EXPECT_THAT(find({claude, codex, node(12, 11, "mcp.js")}), IsEmpty());
}

TEST(ForgottenFinderTest, ARuntimeThatLostItsAgentIsJudgedByItself) {
  EXPECT_THAT(titlesOf(find(
                  {facts({.pid = 10, .path = "/opt/homebrew/bin/claude"}), node(11, 1, "mcp.js")})),
              ElementsAre("mcp.js"));
}

TEST(ForgottenFinderTest, OneTitleInTwoProjectsMakesTwoRows) {
  auto a = node(10, 1, "a.js");
  auto b = node(11, 1, "a.js");
  a.directory = "/Users/me/code/one";
  b.directory = "/Users/me/code/two";
  EXPECT_THAT(find({a, b}), SizeIs(2));
  b.directory = a.directory;
  EXPECT_THAT(find({a, b}), SizeIs(1));
}

TEST(ForgottenFinderTest, OneTitleWithoutAProjectMakesOneRow) {
  auto home = node(11, 1, "a.js");
  home.directory = std::string(kHome);
  EXPECT_THAT(find({node(10, 1, "a.js"), home}), SizeIs(1));
}

TEST(ForgottenFinderTest, AMergedRowSumsUpItsRows) {
  auto a = node(12, 1, "a.js");
  auto b = node(10, 1, "a.js");
  auto c = node(11, 10, "a.js");
  a.ports = {3000, 9229};
  b.ports = {3000};
  c.ports = {80};
  a.uptime = 9000;
  b.uptime = 4000;
  const auto items = find({a, b, c});
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_EQ(items[0].root, b);
  EXPECT_THAT(items[0].ports, ElementsAre(80, 3000, 9229));
  EXPECT_THAT(pidsOf(items[0].members), ElementsAre(10, 11, 12));
  EXPECT_EQ(items[0].uptime, 9000);
  EXPECT_EQ(items[0].simulatorUDID, std::nullopt);
}

TEST(ForgottenFinderTest, RowsDescendByUptime) {
  auto a = node(10, 1, "a.js");
  auto b = node(11, 1, "b.js");
  auto c = node(12, 1, "c.js");
  a.uptime = 4000;
  b.uptime = 9000;
  c.uptime = 5000;
  EXPECT_THAT(titlesOf(find({a, b, c})), ElementsAre("b.js", "c.js", "a.js"));
}

TEST(ForgottenFinderTest, RowsOfEqualUptimeAscendByThePidOfTheirRoot) {
  EXPECT_THAT(titlesOf(find({node(12, 1, "c.js"), node(10, 1, "a.js"), node(11, 1, "b.js")})),
              ElementsAre("a.js", "b.js", "c.js"));
}

TEST(ForgottenFinderTest, AProcessThatIsItsOwnParentIsARoot) {
  EXPECT_THAT(titlesOf(find({node(10, 10, "a.js")})), ElementsAre("a.js"));
}

// Each round of a circle leads back into it; every process heads a row of its own or stands in
// another's, and in no two.
TEST(ForgottenFinderTest, ACircleOfParentsEndsTheWalk) {
  for (const std::int32_t length : {2, 3, 5, 16, 17, 40}) {
    std::vector<ProcessFacts> circle;
    for (std::int32_t i = 0; i < length; ++i) {
      circle.push_back(node(100 + i, 100 + (i + 1) % length, std::to_string(i) + ".js"));
    }
    std::vector<std::int32_t> seen;
    for (const ForgottenItem& item : find(circle)) {
      const auto pids = pidsOf(item.members);
      seen.insert(seen.end(), pids.begin(), pids.end());
    }
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, pidsOf(circle)) << length;
  }
}

TEST(ForgottenFinderTest, AChainOfRuntimesEndsAtTheSeventeenth) {
  const auto chain = [](std::int32_t length) {
    std::vector<ProcessFacts> processes;
    for (std::int32_t i = 1; i <= length; ++i) {
      processes.push_back(node(i + 1, i == 1 ? 1 : i, std::to_string(i) + ".js"));
    }
    return processes;
  };
  EXPECT_THAT(titlesOf(find(chain(17))), ElementsAre("1.js"));

  // The eighteenth gets as far as the second, which then heads a row and leaves that of the first.
  const auto items = find(chain(18));
  ASSERT_THAT(titlesOf(items), ElementsAre("1.js", "2.js"));
  EXPECT_THAT(items[0].members, SizeIs(16));
  EXPECT_THAT(pidsOf(items[1].members), ElementsAre(3, 19));
}

TEST(ForgottenFinderTest, OfTwoFactsWithOnePidTheFirstCounts) {
  EXPECT_THAT(titlesOf(find({node(10, 1, "first.js"), node(10, 1, "second.js")})),
              ElementsAre("first.js"));
  // One that does not qualify takes nobody's place.
  auto young = node(10, 1, "young.js");
  young.uptime = 60;
  EXPECT_THAT(titlesOf(find({young, node(10, 1, "old.js")})), ElementsAre("old.js"));
}

TEST(ForgottenFinderTest, AHundredThousandProcessesOfOneNameAreGrouped) {
  std::vector<ProcessFacts> flat;
  std::vector<ProcessFacts> deep;
  for (std::int32_t i = 0; i < 100'000; ++i) {
    flat.push_back(facts({.pid = 2 + i, .path = "/Users/me/bin/foo", .ports = {i % 65535 + 1}}));
    deep.push_back(node(2 + i, 1 + i, "a.js"));
  }
  const auto rows = find(flat);
  ASSERT_THAT(rows, SizeIs(1));
  EXPECT_THAT(rows[0].members, SizeIs(100'000));
  EXPECT_THAT(rows[0].ports, SizeIs(65535));
  ASSERT_THAT(find(deep), SizeIs(1));
}

TEST(ForgottenFinderTest, HugeArgumentsAndWildBytesAreTakenAsTheyAre) {
  const std::string huge(2'000'000, 'x');
  EXPECT_THAT(titlesOf(find({node(10, 1, huge)})), ElementsAre(huge));
  EXPECT_THAT(titlesOf(find({node(10, 1, "/w/\xff\xfe.js")})), ElementsAre("\xff\xfe.js"));
  const auto nameless = facts({.pid = 10, .ports = {1}, .name = "\xc3\x28\x80"});
  EXPECT_THAT(titlesOf(find({nameless})), ElementsAre("\xc3\x28\x80"));
}

}  // namespace
}  // namespace embrix
