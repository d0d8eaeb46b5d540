#include "sampling/process_grouper.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

constexpr std::uint32_t kUser = 501;
constexpr std::uint32_t kRoot = 0;
using Samples = std::vector<ProcessSample>;

ProcessSample process(std::int32_t pid, std::int32_t ppid, const char* path,
                      std::uint32_t uid = kUser) {
  ProcessSample made;
  made.pid = pid;
  made.ppid = ppid;
  made.uid = uid;
  const std::string text = path;
  made.name = text.substr(text.rfind('/') + 1);
  if (text.starts_with('/')) made.path = text;
  return made;
}

// Applications by executable path and responsible processes by pid, as a test sets them up.
class ProcessGrouperTest : public testing::Test {
 protected:
  std::map<std::string, AppInfo> apps;
  std::map<std::int32_t, std::int32_t> responsible;
  int appCalls = 0;

  ProcessGrouper grouper{[this](const ProcessSample& sample) -> std::optional<AppInfo> {
                           ++appCalls;
                           if (!sample.path || !apps.contains(sample.path->string()))
                             return std::nullopt;
                           return apps.at(sample.path->string());
                         },
                         [this](std::int32_t pid) -> std::optional<std::int32_t> {
                           if (!responsible.contains(pid)) return std::nullopt;
                           return responsible.at(pid);
                         }};

  void install(const char* executable, const char* name, const char* identifier) {
    apps[executable] = {
        .name = name,
        .bundleID = identifier ? std::optional<SharedText>(identifier) : std::nullopt,
        .bundlePath = "/Applications/An.app"};
  }
  GroupIdentity only(const ProcessSample& sample) { return grouper.groups({sample}).identity(0); }
  std::int32_t rootOf(const Samples& samples, std::int32_t pid) {
    return grouper.groups(samples).find(pid)->rootPID;
  }
};

TEST_F(ProcessGrouperTest, NoProcessesMakeNoGroups) {
  const ProcessGroups& groups = grouper.groups({});
  EXPECT_EQ(groups.size(), 0u);
  EXPECT_EQ(groups.keyCount(), 0u);
  EXPECT_EQ(groups.find(1), nullptr);
}

TEST_F(ProcessGrouperTest, ChildOfTheFirstProcessOrTheKernelIsItsOwnRoot) {
  const Samples table{process(1, 0, "/sbin/launchd"), process(10, 1, "/bin/a"),
                      process(11, 0, "/bin/b"), process(12, -5, "/bin/c")};
  for (const std::int32_t pid : {1, 10, 11, 12}) EXPECT_EQ(rootOf(table, pid), pid);
}

TEST_F(ProcessGrouperTest, ProcessBelongsToItsOldestAncestorBelowTheFirst) {
  const Samples table{process(13, 12, "/bin/make"), process(12, 11, "/bin/zsh"),
                      process(11, 10, "/usr/bin/login"), process(10, 1, "/opt/terminal"),
                      process(1, 0, "/sbin/launchd")};
  for (const std::int32_t pid : {10, 11, 12, 13}) EXPECT_EQ(rootOf(table, pid), 10);
}

TEST_F(ProcessGrouperTest, ProcessWhoseParentIsGoneIsItsOwnRoot) {
  EXPECT_EQ(rootOf({process(20, 999, "/bin/a"), process(21, 20, "/bin/b")}, 21), 20);
}

TEST_F(ProcessGrouperTest, ProcessThatIsItsOwnParentIsItsOwnRoot) {
  EXPECT_EQ(rootOf({process(20, 20, "/bin/a")}, 20), 20);
}

TEST_F(ProcessGrouperTest, LoopOfParentsEndsWhereItIsNoticed) {
  const Samples table{process(30, 31, "/bin/a"), process(31, 32, "/bin/b"),
                      process(32, 30, "/bin/c"), process(33, 31, "/bin/d")};
  for (const std::int32_t pid : {30, 31, 32, 33}) EXPECT_EQ(rootOf(table, pid), 32);
}

// Links 100 to 169, each the child of the one before.
Samples chainOfSeventy() {
  Samples chain;
  for (std::int32_t pid = 100; pid < 170; ++pid) {
    chain.push_back(process(pid, pid == 100 ? 1 : pid - 1, "/bin/link"));
  }
  return chain;
}

TEST_F(ProcessGrouperTest, ChainOfSeventyIsClimbedForSixtyFour) {
  Samples chain = chainOfSeventy();
  std::reverse(chain.begin(), chain.end());
  const ProcessGroups& groups = grouper.groups(chain);
  EXPECT_EQ(groups.find(169)->rootPID, 105);
  EXPECT_EQ(groups.find(106)->rootPID, 105);
  EXPECT_EQ(groups.find(105)->rootPID, 100);
  EXPECT_EQ(groups.find(100)->rootPID, 100);
}

TEST_F(ProcessGrouperTest, ChainThatIsMetFromItsTopIsNeverTooLong) {
  const ProcessGroups& groups = grouper.groups(chainOfSeventy());
  for (std::int32_t pid = 100; pid < 170; ++pid) EXPECT_EQ(groups.find(pid)->rootPID, 100);
}

TEST_F(ProcessGrouperTest, ApplicationIsKnownByItsIdentifier) {
  install("/Applications/An.app/Contents/MacOS/An", "An", "com.example.An");
  const GroupIdentity identity = only(process(50, 1, "/Applications/An.app/Contents/MacOS/An"));
  EXPECT_EQ(identity.key, "com.example.An");
  EXPECT_EQ(identity.name, "An");
  EXPECT_EQ(identity.rootPID, 50);
  ASSERT_TRUE(identity.app);
  EXPECT_EQ(identity.app->name, "An");
}

TEST_F(ProcessGrouperTest, ApplicationWithoutIdentifierIsKnownByPathAndShownByItsName) {
  install("/Apps/An.app/An", "A Name", nullptr);
  const GroupIdentity identity = only(process(50, 1, "/Apps/An.app/An"));
  EXPECT_EQ(identity.key, "/Apps/An.app/An");
  EXPECT_EQ(identity.name, "A Name");
  EXPECT_TRUE(identity.app);
}

TEST_F(ProcessGrouperTest, ApplicationWithoutIdentifierAndAKnownProcessIsKnownByTheDisplayName) {
  install("/Apps/An.app/mds", "A Name", nullptr);
  const GroupIdentity identity = only(process(50, 1, "/Apps/An.app/mds"));
  EXPECT_EQ(identity.key, "named:Spotlight indexing");
  EXPECT_EQ(identity.name, "A Name");
}

TEST_F(ProcessGrouperTest, SystemProcessInABundleKeepsItsApplication) {
  install("/Apps/An.app/An", "An", "com.example.An");
  EXPECT_EQ(only(process(50, 1, "/Apps/An.app/An", kRoot)).key, "com.example.An");
}

TEST_F(ProcessGrouperTest, SystemProcessOutsideABundleIsTheSystem) {
  const GroupIdentity system{.key = "system", .name = "System", .rootPID = 1, .app = std::nullopt};
  EXPECT_EQ(only(process(50, 1, "/usr/libexec/somed", kRoot)), system);
  EXPECT_EQ(only(process(0, 0, "kernel_task", kRoot)), system);  // known by name all the same
}

TEST_F(ProcessGrouperTest, KnownProcessOfTheUserIsKnownByItsDisplayName) {
  const GroupIdentity identity = only(process(50, 1, "/System/WindowServer"));
  EXPECT_EQ(identity.key, "named:Display (WindowServer)");
  EXPECT_EQ(identity.name, "Display (WindowServer)");
}

TEST_F(ProcessGrouperTest, ProcessesWithOneDisplayNameShareAKey) {
  const ProcessGroups& groups = grouper.groups(
      {process(50, 1, "/usr/bin/swiftc"), process(51, 1, "/usr/bin/swift-frontend")});
  EXPECT_EQ(groups.identity(0).key, "named:Swift compiler");
  EXPECT_EQ(groups.identity(1).key, "named:Swift compiler");
  EXPECT_EQ(groups.keyNumber(0), groups.keyNumber(1));
  EXPECT_EQ(groups.identity(0).rootPID, 50);
  EXPECT_EQ(groups.identity(1).rootPID, 51);
}

TEST_F(ProcessGrouperTest, UnknownToolIsKnownByItsPath) {
  const GroupIdentity identity = only(process(50, 1, "/usr/local/bin/foo"));
  EXPECT_EQ(identity.key, "/usr/local/bin/foo");
  EXPECT_EQ(identity.name, "foo");
  EXPECT_EQ(identity.app, std::nullopt);
}

TEST_F(ProcessGrouperTest, ToolWithoutAPathIsKnownByItsName) {
  EXPECT_EQ(only(process(50, 1, "foo")).key, "foo");
}

TEST_F(ProcessGrouperTest, ReversedDomainNameIsKnownByItsLastPiece) {
  const GroupIdentity identity = only(process(50, 1, "/opt/com.example.Updater"));
  EXPECT_EQ(identity.key, "named:Updater");
  EXPECT_EQ(identity.name, "Updater");
  EXPECT_EQ(only(process(50, 1, "/opt/com.example.abc")).key, "/opt/com.example.abc");
}

TEST_F(ProcessGrouperTest, NamesThatNeverRepeatAreStillDerivedRight) {
  for (int i = 0; i < 5000; ++i) {
    const std::string name = "com.example.Tool" + std::to_string(i);
    ASSERT_EQ(only(process(50, 1, name.c_str())).key, "named:Tool" + std::to_string(i));
  }
}

TEST_F(ProcessGrouperTest, HelperOfTheFirstProcessFindsHomeThroughWhoIsResponsible) {
  install("/Apps/An.app/An", "An", "com.example.An");
  responsible[60] = 51;  // itself a child of the application
  const ProcessGroups& groups =
      grouper.groups({process(60, 1, "/usr/libexec/helper"), process(61, 60, "/usr/libexec/worker"),
                      process(50, 1, "/Apps/An.app/An"), process(51, 50, "/usr/libexec/part")});
  for (const std::int32_t pid : {60, 61, 50, 51}) {
    EXPECT_EQ(groups.find(pid)->key, "com.example.An") << pid;
    EXPECT_EQ(groups.find(pid)->rootPID, 50) << pid;
  }
  EXPECT_EQ(groups.keyCount(), 1u);
}

TEST_F(ProcessGrouperTest, SystemHelperIsTakenHomeByItsApplication) {
  install("/Apps/An.app/An", "An", "com.example.An");
  responsible[60] = 50;
  EXPECT_EQ(
      grouper
          .groups({process(60, 1, "/usr/libexec/helper", kRoot), process(50, 1, "/Apps/An.app/An")})
          .identity(0)
          .key,
      "com.example.An");
}

TEST_F(ProcessGrouperTest, HelperThatIsResponsibleForItselfKeepsItsRoot) {
  responsible[60] = 60;
  EXPECT_EQ(only(process(60, 1, "/usr/libexec/helper")).key, "/usr/libexec/helper");
}

// The climb from the end of the chain stops at 105, whose own root is another.
TEST_F(ProcessGrouperTest, RootThatIsResponsibleForItselfIsNotClimbedFromAgain) {
  responsible[105] = 105;
  Samples chain = chainOfSeventy();
  std::reverse(chain.begin(), chain.end());
  EXPECT_EQ(rootOf(chain, 169), 105);
}

TEST_F(ProcessGrouperTest, ResponsibleProcessOutsideTheTableDoesNotCount) {
  responsible[60] = 999;
  EXPECT_EQ(only(process(60, 1, "/usr/libexec/helper")).key, "/usr/libexec/helper");
}

TEST_F(ProcessGrouperTest, ApplicationIsNotTakenAwayByWhoIsResponsible) {
  install("/Apps/An.app/An", "An", "com.example.An");
  responsible[50] = 60;
  const Samples table{process(50, 1, "/Apps/An.app/An"), process(60, 1, "/opt/launcher")};
  EXPECT_EQ(rootOf(table, 50), 50);
}

TEST_F(ProcessGrouperTest, ResponsibilityIsFollowedOnlyOnce) {
  responsible[60] = 70;
  responsible[70] = 80;
  const ProcessGroups& groups = grouper.groups(
      {process(60, 1, "/opt/a"), process(70, 1, "/opt/b"), process(80, 1, "/opt/c")});
  EXPECT_EQ(groups.find(60)->key, "/opt/b");
  EXPECT_EQ(groups.find(70)->key, "/opt/c");
  EXPECT_EQ(groups.find(80)->key, "/opt/c");
}

TEST_F(ProcessGrouperTest, KeysAreNumberedInTheOrderOfTheTable) {
  const ProcessGroups& groups =
      grouper.groups({process(50, 1, "/opt/b"), process(51, 1, "/opt/a"), process(52, 50, "/opt/z"),
                      process(53, 1, "/opt/b")});
  EXPECT_EQ(groups.size(), 4u);
  EXPECT_EQ(groups.keyCount(), 2u);
  EXPECT_EQ(groups.keyNumber(0), 0u);
  EXPECT_EQ(groups.keyNumber(1), 1u);
  EXPECT_EQ(groups.keyNumber(2), 0u);
  EXPECT_EQ(groups.keyNumber(3), 0u);
}

TEST_F(ProcessGrouperTest, NothingOfTheTableBeforeShowsThrough) {
  install("/Apps/An.app/An", "An", "com.example.An");
  grouper.groups({process(50, 1, "/Apps/An.app/An"), process(51, 50, "/opt/a")});
  const ProcessGroups& groups =
      grouper.groups({process(50, 1, "/opt/b"), process(51, 1, "/opt/a")});
  EXPECT_EQ(groups.identity(0).key, "/opt/b");
  EXPECT_EQ(groups.identity(0).app, std::nullopt);
  EXPECT_EQ(groups.identity(1).key, "/opt/a");
  EXPECT_EQ(groups.find(51)->rootPID, 51);
}

TEST_F(ProcessGrouperTest, ApplicationsAreAskedForTopsOnly) {
  Samples table{process(50, 1, "/opt/top")};
  for (std::int32_t pid = 51; pid < 151; ++pid) table.push_back(process(pid, pid - 1, "/opt/sub"));
  grouper.groups(table);
  EXPECT_EQ(appCalls, 1);
}

TEST_F(ProcessGrouperTest, FirstRowSpeaksForAPidThatStandsTwice) {
  const ProcessGroups& groups = grouper.groups(
      {process(50, 1, "/opt/a"), process(50, 51, "/opt/b"), process(51, 1, "/opt/c")});
  ASSERT_EQ(groups.size(), 3u);
  EXPECT_EQ(groups.identity(0).key, "/opt/a");
  EXPECT_EQ(groups.identity(1).key, "/opt/a");
  EXPECT_EQ(groups.identity(2).key, "/opt/c");
}

}  // namespace
}  // namespace embrix
