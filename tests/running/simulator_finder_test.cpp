#include "running/simulator_finder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "facts.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kUDID = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";
constexpr const char* kOtherUDID = "a1b2c3d4-0000-4000-8000-00000000ffff";

std::string bootstrapOf(const std::string& udid) {
  return "/Users/me/Library/Developer/CoreSimulator/Devices/" + udid +
         "/data/var/run/launchd_bootstrap.plist";
}

ProcessFacts simulator(std::int32_t pid, const std::string& udid = kUDID, std::int32_t ppid = 1) {
  return facts({.pid = pid,
                .ppid = ppid,
                .path = "/Library/Developer/RuntimeRoot/sbin/launchd_sim",
                .arguments = {"launchd_sim", bootstrapOf(udid)}});
}

ProcessFacts within(std::int32_t pid, std::int32_t ppid) {
  return facts({.pid = pid, .ppid = ppid, .path = "/Runtime/usr/libexec/x"});
}

std::vector<ForgottenItem> find(const std::vector<ProcessFacts>& processes) {
  return SimulatorFinder::find(processes, kUser, [](const std::string&) {
    return SimulatorFinder::Device{"iPhone 15 Pro", "com.apple.CoreSimulator.SimRuntime.iOS-17-4"};
  });
}

TEST(SimulatorFinderTest, NothingGivesNothing) {
  EXPECT_THAT(find({}), IsEmpty());
}

TEST(SimulatorFinderTest, ARowNamesTheDevice) {
  const auto root = simulator(10);
  const auto items = find({root, within(11, 10)});
  ASSERT_THAT(items, SizeIs(1));
  const ForgottenItem expected{.title = "iOS Simulator · iPhone 15 Pro",
                               .project = "iOS 17.4",
                               .symbol = "iphone.gen3",
                               .ports = {},
                               .uptime = root.uptime,
                               .root = root,
                               .members = {root, within(11, 10)},
                               .simulatorUDID = kUDID};
  EXPECT_EQ(items[0], expected);
}

TEST(SimulatorFinderTest, AnotherUsersSimulatorIsNone) {
  auto process = simulator(10);
  process.uid = 0;
  EXPECT_THAT(find({process}), IsEmpty());
}

TEST(SimulatorFinderTest, ExactlyAnHourCounts) {
  auto process = simulator(10);
  process.uptime = 3599;
  EXPECT_THAT(find({process}), IsEmpty());
  process.uptime = 3600;
  EXPECT_THAT(find({process}), SizeIs(1));
}

TEST(SimulatorFinderTest, OnlyTheExactNameIsASimulatorsRoot) {
  for (const char* name : {"Launchd_sim", "launchd_sim2", "launchd", ""}) {
    auto process = simulator(10);
    process.name = name;
    EXPECT_THAT(find({process}), IsEmpty()) << name;
  }
}

TEST(SimulatorFinderTest, ARootThatNamesNoDeviceGivesNoRow) {
  auto process = simulator(10);
  process.arguments = {"launchd_sim"};
  EXPECT_THAT(find({process}), IsEmpty());
}

TEST(SimulatorFinderTest, TheDeviceIsAskedForByItsIdentifier) {
  std::vector<std::string> asked;
  SimulatorFinder::find({simulator(10), simulator(20, kOtherUDID)}, kUser,
                        [&](const std::string& udid) {
                          asked.push_back(udid);
                          return std::nullopt;
                        });
  EXPECT_THAT(asked, ElementsAre(kUDID, kOtherUDID));
}

TEST(SimulatorFinderTest, ADeviceThatCannotBeReadKeepsItsRow) {
  const auto items = SimulatorFinder::find({simulator(10)}, kUser,
                                           [](const std::string&) { return std::nullopt; });
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_EQ(items[0].title, "iOS Simulator · Simulator");
  EXPECT_EQ(items[0].project, std::nullopt);
}

TEST(SimulatorFinderTest, ADeviceWithoutARuntimeHasNoProject) {
  const auto items = SimulatorFinder::find({simulator(10)}, kUser, [](const std::string&) {
    return SimulatorFinder::Device{"iPad", std::nullopt};
  });
  ASSERT_THAT(items, SizeIs(1));
  EXPECT_EQ(items[0].title, "iOS Simulator · iPad");
  EXPECT_EQ(items[0].project, std::nullopt);
}

TEST(SimulatorFinderTest, TheOldestSimulatorComesFirst) {
  auto young = simulator(10);
  auto old = simulator(20, kOtherUDID);
  young.uptime = 4000;
  old.uptime = 90000;
  const auto items = find({young, old});
  ASSERT_THAT(items, SizeIs(2));
  EXPECT_EQ(items[0].root.pid, 20);
  EXPECT_EQ(items[1].root.pid, 10);
}

TEST(SimulatorFinderTest, EachSimulatorHasItsOwnProcesses) {
  const auto items = find(
      {simulator(10), simulator(20, kOtherUDID), within(21, 20), within(11, 10), within(12, 11)});
  ASSERT_THAT(items, SizeIs(2));
  EXPECT_THAT(pidsOf(items[0].members), ElementsAre(10, 11, 12));
  EXPECT_THAT(pidsOf(items[1].members), ElementsAre(20, 21));
}

TEST(SimulatorFinderTest, ASimulatorBelowAnotherKeepsItsProcesses) {
  const auto items =
      find({simulator(10), simulator(11, kOtherUDID, 10), within(12, 11), within(13, 10)});
  ASSERT_THAT(items, SizeIs(2));
  EXPECT_THAT(pidsOf(items[0].members), ElementsAre(10, 13));
  EXPECT_THAT(pidsOf(items[1].members), ElementsAre(11, 12));
}

TEST(SimulatorFinderTest, TwentyThousandNestedRootsEnd) {
  std::vector<ProcessFacts> processes;
  for (std::int32_t i = 0; i < 20'000; ++i) processes.push_back(simulator(2 + i, kUDID, 1 + i));
  EXPECT_THAT(find(processes), SizeIs(20'000));
}

struct Identified {
  const char* label;
  std::vector<std::string> arguments;
  std::optional<std::string> expected;
};

TEST(SimulatorUDIDTest, IsTheFolderOfTheDevice) {
  const std::vector<Identified> cases = {
      {"a bootstrap file", {"launchd_sim", bootstrapOf(kUDID)}, kUDID},
      {"the case is kept", {bootstrapOf(kOtherUDID)}, kOtherUDID},
      {"nothing behind it", {"/Devices/" + std::string(kUDID)}, kUDID},
      {"a short one is passed over", {"/x/Devices/short/", bootstrapOf(kUDID)}, kUDID},
      {"the first in order", {bootstrapOf(kOtherUDID), bootstrapOf(kUDID)}, kOtherUDID},
      {"only the first folder of an argument counts",
       {"/Devices/x/Devices/" + std::string(kUDID)},
       std::nullopt},
      {"no folder", {"launchd_sim", kUDID}, std::nullopt},
      {"hyphens elsewhere", {"/Devices/3F2504E04-F89-41D3-9A0C-0305E82C3301"}, std::nullopt},
      {"no hexadecimal digit", {"/Devices/3F2504E0-4F89-41D3-9A0C-0305E82C330g"}, std::nullopt},
      {"one short", {"/Devices/3F2504E0-4F89-41D3-9A0C-0305E82C330"}, std::nullopt},
      {"nothing", {}, std::nullopt},
      {"empty ones", {"", "/Devices/"}, std::nullopt},
      {"wild bytes", {"/Devices/\xff\xfe" + std::string(40, '\x80')}, std::nullopt},
      {"a way out of the folder",
       {"/Devices/../../../../../etc/passwd-aaaaaaaaaaaaa"},
       std::nullopt},
  };
  for (const Identified& told : cases) {
    EXPECT_EQ(SimulatorFinder::udid(told.arguments), told.expected) << told.label;
  }
}

struct Runtime {
  const char* label;
  const char* identifier;
  std::optional<std::string> expected;
};

TEST(SimulatorRuntimeNameTest, IsThePlatformAndItsVersion) {
  const std::vector<Runtime> cases = {
      {"two numbers", "com.apple.CoreSimulator.SimRuntime.iOS-17-4", "iOS 17.4"},
      {"three numbers", "com.apple.CoreSimulator.SimRuntime.watchOS-10-3-1", "watchOS 10.3.1"},
      {"one number", "x.xrOS-2", "xrOS 2"},
      {"the piece alone", "iOS-17-4", "iOS 17.4"},
      {"no version", "com.apple.CoreSimulator.SimRuntime.iOS", std::nullopt},
      {"a hyphen behind", "iOS-", std::nullopt},
      {"a dot behind", "x.iOS-17.", std::nullopt},
      {"nothing", "", std::nullopt},
      {"hyphens alone", "---", std::nullopt},
  };
  for (const Runtime& runtime : cases) {
    EXPECT_EQ(SimulatorFinder::runtimeName(runtime.identifier), runtime.expected) << runtime.label;
  }
}

std::vector<std::int32_t> below(std::int32_t pid, const std::vector<ProcessFacts>& processes) {
  SimulatorFinder::ChildrenByParent children;
  for (const ProcessFacts& process : processes) children[process.ppid].push_back(&process);
  std::vector<std::int32_t> pids;
  for (const ProcessFacts* process : SimulatorFinder::descendants(pid, children)) {
    pids.push_back(process->pid);
  }
  return pids;
}

TEST(SimulatorDescendantsTest, TheLastChildIsWalkedFirst) {
  EXPECT_THAT(below(1, {within(2, 1), within(3, 1), within(4, 3), within(5, 3), within(6, 2)}),
              ElementsAre(3, 5, 4, 2, 6));
}

TEST(SimulatorDescendantsTest, NobodyBelowGivesNobody) {
  EXPECT_THAT(below(9, {within(2, 1)}), IsEmpty());
}

TEST(SimulatorDescendantsTest, ACircleEndsAndLeavesItsStartOut) {
  EXPECT_THAT(below(2, {within(2, 4), within(3, 2), within(4, 3)}), ElementsAre(3, 4));
  EXPECT_THAT(below(2, {within(2, 2)}), IsEmpty());
}

TEST(SimulatorDescendantsTest, ADeepChainEnds) {
  std::vector<ProcessFacts> chain;
  for (std::int32_t i = 0; i < 100'000; ++i) chain.push_back(within(2 + i, 1 + i));
  EXPECT_THAT(below(1, chain), SizeIs(100'000));
}

}  // namespace
}  // namespace embrix
