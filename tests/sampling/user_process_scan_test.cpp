#include "sampling/user_process_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/scripted_host.h"
#include "sampling/process_reader.h"

namespace embrix {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* kUDID = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";

// A machine that is scanned again and again by the same readers.
class UserProcessScanTest : public testing::Test {
 protected:
  UserProcessScan::Result scan() {
    world_.log.clear();
    return UserProcessScan::run(
        processes_.read(), world_.user, systemFolders_, details_,
        [this](const std::string& udid) {
          asked_.push_back(udid);
          return SimulatorFinder::Device{"iPhone 15 Pro", "x.iOS-17-4"};
        },
        world_.wallTime);
  }

  // A runtime that serves a script on a port, started `age` seconds ago.
  ScriptedProcess& addServer(std::int32_t pid, const std::string& path, double age) {
    ScriptedProcess& process = world_.add(pid, path);
    process.raw.startTime = static_cast<std::uint64_t>(world_.wallTime - age);
    process.arguments = {"node", "server.js"};
    process.directory = "/Users/ada/code/shop";
    process.listening = {{.port = 3000, .exposed = true}, {.port = 9229, .exposed = false}};
    return process;
  }

  ScriptedProcess& addSimulator(std::int32_t pid, const std::string& path, double age) {
    ScriptedProcess& process = world_.add(pid, path);
    process.raw.startTime = static_cast<std::uint64_t>(world_.wallTime - age);
    process.arguments = {"launchd_sim", "/Devices/" + std::string(kUDID) + "/data"};
    return process;
  }

  ScriptedHost world_;
  Host host_ = world_.host();
  ProcessReader processes_{*host_.processes};
  ProcessDetailsReader details_{*host_.processDetails};
  SystemFolders systemFolders_;
  std::vector<std::string> asked_;
};

constexpr const char* kNode = "/opt/homebrew/bin/node";

TEST_F(UserProcessScanTest, AnEmptyTableGivesNothing) {
  const auto result = scan();
  EXPECT_THAT(result.forgotten, IsEmpty());
  EXPECT_THAT(result.servers, IsEmpty());
}

TEST_F(UserProcessScanTest, AYoungServerIsServedAndNotForgotten) {
  addServer(10, kNode, 59 * 60);
  const auto result = scan();
  EXPECT_THAT(result.forgotten, IsEmpty());
  ASSERT_THAT(result.servers, SizeIs(1));
  EXPECT_EQ(result.servers[0].title, "server.js");
  EXPECT_EQ(result.servers[0].project, "shop");
  EXPECT_THAT(result.servers[0].ports, ElementsAre(3000, 9229));
  EXPECT_THAT(result.servers[0].process.exposedPorts, ElementsAre(3000));
}

TEST_F(UserProcessScanTest, AnHourLaterItIsForgottenAsWell) {
  addServer(10, kNode, 59 * 60);
  scan();
  world_.wallTime += 2 * 60;
  const auto result = scan();
  EXPECT_THAT(result.servers, SizeIs(1));
  ASSERT_THAT(result.forgotten, SizeIs(1));
  EXPECT_EQ(result.forgotten[0].uptime, 61 * 60);
  EXPECT_EQ(result.forgotten[0].id(), result.servers[0].id());
}

TEST_F(UserProcessScanTest, IdsAreThoseOfTheSamples) {
  addServer(10, kNode, 7200);
  const auto result = scan();
  ASSERT_THAT(result.forgotten, SizeIs(1));
  EXPECT_EQ(result.forgotten[0].id(), processes_.read().front().id.view());
}

TEST_F(UserProcessScanTest, ARuntimeInASystemFolderIsNoCandidate) {
  addServer(10, "/usr/local/bin/node", 7200);
  addServer(11, "/System/x/node", 7200);
  const auto result = scan();
  EXPECT_THAT(result.forgotten, IsEmpty());
  EXPECT_THAT(result.servers, IsEmpty());
  EXPECT_THAT(world_.log, Not(Contains(HasSubstr("processDetails.arguments"))));
  EXPECT_THAT(world_.log, Not(Contains(HasSubstr("processDetails.listening"))));
}

TEST_F(UserProcessScanTest, OtherUsersAndProcessesWithoutAPathAreNotAskedAbout) {
  addServer(10, kNode, 7200).raw.uid = 0;
  addServer(11, kNode, 7200).path = std::nullopt;
  const auto result = scan();
  EXPECT_THAT(result.servers, IsEmpty());
  EXPECT_THAT(world_.log, Not(Contains(HasSubstr("processDetails.listening"))));
}

TEST_F(UserProcessScanTest, OnLinuxTheListOfLinuxCounts) {
  systemFolders_ = SystemFolders::forHost("linux");
  addServer(10, "/usr/bin/node", 7200);
  addServer(11, "/usr/sbin/sshd", 7200);
  addServer(12, "/home/ada/.nvm/versions/node/v20/bin/node", 7200).listening = {{.port = 5173}};
  const auto result = scan();
  ASSERT_THAT(result.servers, SizeIs(2));
  EXPECT_EQ(result.servers[0].process.pid, 10);
  EXPECT_EQ(result.servers[1].process.pid, 12);
  EXPECT_THAT(world_.log, Not(Contains("processDetails.listening 11")));
}

TEST_F(UserProcessScanTest, DetailsAreReadOnceAndSocketsAtEachScan) {
  addServer(10, kNode, 7200);
  scan();
  world_.find(10)->listening = {{.port = 4000}};
  const auto result = scan();
  EXPECT_THAT(world_.log, Not(Contains("processDetails.arguments 10")));
  ASSERT_THAT(result.servers, SizeIs(1));
  EXPECT_THAT(result.servers[0].ports, ElementsAre(4000));
}

TEST_F(UserProcessScanTest, RowsShareTheTextsOfTheirProcess) {
  addServer(10, kNode, 7200);
  const auto first = scan();
  const auto second = scan();
  ASSERT_THAT(first.servers, SizeIs(1));
  ASSERT_THAT(second.forgotten, SizeIs(1));
  const ProcessFacts& served = first.servers[0].process;
  const ProcessFacts& left = second.forgotten[0].members[0];
  EXPECT_FALSE(served.arguments.empty());
  EXPECT_EQ(left.arguments.data(), served.arguments.data());
  EXPECT_EQ(left.directory->view().data(), served.directory->view().data());
}

TEST_F(UserProcessScanTest, AScanIsAnnouncedBeforeItsQuestions) {
  addServer(10, kNode, 7200);
  scan();
  const auto first = std::find_if(world_.log.begin(), world_.log.end(), [](const auto& call) {
    return call.starts_with("processDetails");
  });
  ASSERT_NE(first, world_.log.end());
  EXPECT_EQ(*first, "processDetails.beginScan");
  EXPECT_EQ(std::count(world_.log.begin(), world_.log.end(), "processDetails.beginScan"), 1);
}

TEST_F(UserProcessScanTest, DetailsOfTheDeadAreForgotten) {
  addServer(10, kNode, 7200);
  addServer(11, kNode, 7200);
  scan();
  EXPECT_EQ(details_.cachedCount(), 2U);
  world_.remove(10);
  scan();
  EXPECT_EQ(details_.cachedCount(), 1U);
}

TEST_F(UserProcessScanTest, SimulatorsComeAheadOfEverythingElse) {
  addServer(10, kNode, 90'000);
  addSimulator(20, "/Library/Developer/RuntimeRoot/sbin/launchd_sim", 7200);
  addSimulator(30, "/Library/Developer/RuntimeRoot/sbin/launchd_sim", 8000);
  const auto result = scan();
  ASSERT_THAT(result.forgotten, SizeIs(3));
  EXPECT_EQ(result.forgotten[0].root.pid, 30);
  EXPECT_EQ(result.forgotten[1].root.pid, 20);
  EXPECT_EQ(result.forgotten[1].title, "iOS Simulator · iPhone 15 Pro");
  EXPECT_EQ(result.forgotten[1].project, "iOS 17.4");
  EXPECT_EQ(result.forgotten[1].simulatorUDID, kUDID);
  EXPECT_EQ(result.forgotten[2].title, "server.js");
  EXPECT_THAT(asked_, ElementsAre(kUDID, kUDID));
}

TEST_F(UserProcessScanTest, ASimulatorIsFoundWhereNothingElseIsAskedAbout) {
  addSimulator(20, "/System/Runtime/sbin/launchd_sim", 7200);
  addSimulator(30, "/x/launchd_sim", 7200).path = std::nullopt;
  // Inside the first: one in a system folder, one that is asked for its details, one without a
  // path.
  world_.add(21, "/usr/libexec/backboardd", 20);
  auto& detailed = world_.add(22, "/Users/ada/Demo.app/Demo", 20);
  detailed.arguments = {"Demo"};
  world_.add(23, "/x/y", 22).path = std::nullopt;
  const auto result = scan();
  ASSERT_THAT(result.forgotten, SizeIs(2));
  std::vector<std::int32_t> pids;
  for (const ProcessFacts& member : result.forgotten[0].members) pids.push_back(member.pid);
  EXPECT_THAT(pids, ElementsAre(20, 22, 23, 21));

  const ProcessFacts& root = result.forgotten[0].root;
  EXPECT_EQ(root.path, "/System/Runtime/sbin/launchd_sim");
  EXPECT_EQ(root.uptime, 7200);
  EXPECT_EQ(root.uid, world_.user.uid);
  EXPECT_THAT(root.arguments, SizeIs(2));
  EXPECT_THAT(root.ports, IsEmpty());
  EXPECT_EQ(result.forgotten[0].members[1].arguments, std::vector<std::string>{"Demo"});
  EXPECT_THAT(result.forgotten[0].members[3].arguments, IsEmpty());
  EXPECT_EQ(result.forgotten[0].members[3].directory, std::nullopt);
  EXPECT_THAT(world_.log, Contains("processDetails.arguments 20"));
  EXPECT_THAT(world_.log, Not(Contains("processDetails.arguments 21")));
}

TEST_F(UserProcessScanTest, AnotherUsersSimulatorIsNotAskedAbout) {
  addSimulator(20, "/x/launchd_sim", 7200).raw.uid = 0;
  EXPECT_THAT(scan().forgotten, IsEmpty());
  EXPECT_THAT(world_.log, Not(Contains(HasSubstr("processDetails.arguments"))));
}

TEST_F(UserProcessScanTest, WhatCannotBeReadOnlyMeansLessDetail) {
  addServer(10, kNode, 7200);
  addServer(11, "/Users/ada/bin/foo", 7200);
  world_.failing.insert("processDetails");
  const auto result = scan();
  EXPECT_THAT(result.servers, IsEmpty());
  ASSERT_THAT(result.forgotten, SizeIs(1));
  EXPECT_EQ(result.forgotten[0].title, "node");
  EXPECT_EQ(result.forgotten[0].project, std::nullopt);
}

TEST_F(UserProcessScanTest, AStartInTheFutureIsYoung) {
  addServer(10, kNode, 0).raw.startTime = std::numeric_limits<std::uint64_t>::max();
  const auto result = scan();
  EXPECT_THAT(result.forgotten, IsEmpty());
  EXPECT_THAT(result.servers, SizeIs(1));
}

}  // namespace
}  // namespace embrix
