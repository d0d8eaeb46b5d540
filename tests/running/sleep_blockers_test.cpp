#include "running/sleep_blockers.h"

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/captures.h"

namespace embrix {
namespace {

constexpr std::string_view kSystem = "PreventUserIdleSystemSleep";
constexpr std::string_view kDisplay = "PreventUserIdleDisplaySleep";

PowerAssertion hold(std::int32_t pid, std::string_view process, std::string_view type,
                    std::string_view name = "", std::optional<double> started = std::nullopt) {
  return {.pid = pid,
          .processName = std::string(process),
          .type = std::string(type),
          .name = std::string(name),
          .started = started};
}

std::vector<std::int32_t> pids(const std::vector<SleepBlocker>& rows) {
  std::vector<std::int32_t> pids;
  for (const auto& row : rows) pids.push_back(row.pid);
  return pids;
}

using Pids = std::vector<std::int32_t>;

TEST(SleepBlockersTest, NoHoldsNoRows) {
  EXPECT_TRUE(SleepBlockers::blockers({}).empty());
}

TEST(SleepBlockersTest, TwoHoldsOfOneProcessAreOneRowWithBothFlagsAndReasons) {
  const auto rows = SleepBlockers::blockers({hold(9, "Xcode", kSystem, "Compiling", 200),
                                             hold(9, "Xcode", kDisplay, "Playing video", 100)});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0], (SleepBlocker{.pid = 9,
                                   .processName = "Xcode",
                                   .preventsSystemSleep = true,
                                   .preventsDisplaySleep = true,
                                   .reasons = {"Compiling", "Playing video"},
                                   .since = 100}));
}

TEST(SleepBlockersTest, TypesThatCount) {
  struct Case {
    std::string type;
    bool system;
    bool display;
  };
  for (const auto& [type, system, display] : {
           Case{"PreventUserIdleSystemSleep", true, false},
           Case{"PreventSystemSleep", true, false},
           Case{"NoIdleSleepAssertion", true, false},
           Case{"PreventUserIdleDisplaySleep", false, true},
           Case{"NoDisplaySleepAssertion", false, true},
           Case{"BackgroundTask", false, false},
           Case{"UserIsActive", false, false},
           Case{"NetworkClientActive", false, false},
           Case{"ExternalMedia", false, false},
           Case{"InternalPreventDisplaySleep", false, false},
           Case{"preventsystemsleep", false, false},
           Case{"PreventSystemSleep ", false, false},
           Case{"", false, false},
       }) {
    SCOPED_TRACE(type);
    const auto rows = SleepBlockers::blockers({hold(9, "Xcode", type)});
    ASSERT_EQ(rows.size(), system || display ? 1u : 0u);
    if (rows.empty()) continue;
    EXPECT_EQ(rows[0].preventsSystemSleep, system);
    EXPECT_EQ(rows[0].preventsDisplaySleep, display);
  }
}

TEST(SleepBlockersTest, OneReasonIsToldOnce) {
  const auto rows =
      SleepBlockers::blockers({hold(9, "Xcode", kSystem, "B"), hold(9, "Xcode", kSystem, "A"),
                               hold(9, "Xcode", kDisplay, "B")});
  EXPECT_EQ(rows.at(0).reasons, (std::vector<std::string>{"B", "A"}));
}

TEST(SleepBlockersTest, ARowWithoutReasonsIsValid) {
  const auto rows =
      SleepBlockers::blockers({hold(9, "Xcode", kSystem), hold(9, "Xcode", kDisplay)});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_TRUE(rows[0].reasons.empty());
}

TEST(SleepBlockersTest, AHoldThatDoesNotCountLeavesNoTraceInItsProcessesRow) {
  const auto rows = SleepBlockers::blockers({hold(9, "Old name", "BackgroundTask", "Indexing", 1),
                                             hold(9, "Xcode", kSystem, "Compiling", 5)});
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].processName, "Xcode");
  EXPECT_EQ(rows[0].reasons, std::vector<std::string>{"Compiling"});
  EXPECT_EQ(rows[0].since, 5);
}

TEST(SleepBlockersTest, SystemServicesAreLeftOutByTheirExactName) {
  for (const auto* name : {"powerd", "WindowServer", "sharingd", "useractivityd", "backupd",
                           "softwareupdated", "mds", "mds_stores", "bluetoothd"}) {
    EXPECT_TRUE(SleepBlockers::blockers({hold(9, name, kDisplay)}).empty()) << name;
  }
  for (const auto* name : {"windowserver", "powerd2", "md", ""}) {
    EXPECT_EQ(SleepBlockers::blockers({hold(9, name, kDisplay)}).size(), 1u) << name;
  }
}

TEST(SleepBlockersTest, TheLongestHeldComesFirstAndUnknownAgesLast) {
  const auto rows = SleepBlockers::blockers({hold(1, "unknown", kSystem),
                                             hold(2, "today", kSystem, "", 1'750'000'000),
                                             hold(3, "yesterday", kSystem, "", 1'749'900'000)});
  EXPECT_EQ(pids(rows), (Pids{3, 2, 1}));
}

TEST(SleepBlockersTest, EqualAgesGoByPid) {
  const auto rows = SleepBlockers::blockers({hold(30, "c", kSystem), hold(5, "b", kSystem, "", 100),
                                             hold(20, "d", kSystem), hold(4, "a", kSystem, "", 100),
                                             hold(-1, "e", kSystem)});
  EXPECT_EQ(pids(rows), (Pids{4, 5, -1, 20, 30}));
}

TEST(SleepBlockersTest, OfADatedAndAnUndatedHoldTheDateCounts) {
  for (const bool datedFirst : {true, false}) {
    std::vector<PowerAssertion> holds = {hold(9, "Xcode", kSystem, "", 100),
                                         hold(9, "Xcode", kSystem)};
    if (!datedFirst) std::swap(holds[0], holds[1]);
    EXPECT_EQ(SleepBlockers::blockers(holds).at(0).since, 100);
  }
}

TEST(SleepBlockersTest, ADateThatIsNoNumberIsUnknown) {
  const auto rows = SleepBlockers::blockers(
      {hold(1, "a", kSystem, "", std::nan("")), hold(2, "b", kSystem, "", 100),
       hold(2, "b", kSystem, "", std::nan("")), hold(3, "c", kSystem, "", -100)});
  EXPECT_EQ(pids(rows), (Pids{3, 2, 1}));
  EXPECT_EQ(rows[1].since, 100);
  EXPECT_EQ(rows[2].since, std::nullopt);
}

// The rows "pid 5143(Amphetamine): [0x...] 33:53:01 PreventUserIdleSystemSleep named: "..."" of a
// listing of assertions, taken at the time `now`. A name can have parentheses of its own, and the
// age, of hours that run past 99, can be missing.
std::vector<PowerAssertion> listed(std::string_view text, double now) {
  std::vector<PowerAssertion> holds;
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (!line.starts_with("   pid ")) continue;
    const auto open = line.find('(');
    const auto close = line.find("):");
    const auto named = line.find(" named: \"");
    if (named == std::string_view::npos) continue;
    PowerAssertion assertion;
    assertion.pid = std::stoi(std::string(line.substr(7, open - 7)));
    assertion.processName = std::string(line.substr(open + 1, close - open - 1));
    const auto nameStart = named + 9;
    assertion.name = std::string(line.substr(nameStart, line.find('"', nameStart) - nameStart));
    const std::string_view middle = line.substr(0, named);
    assertion.type = std::string(middle.substr(middle.rfind(' ') + 1));
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    const auto age = middle.find("] ");
    if (age != std::string_view::npos && std::sscanf(std::string(middle.substr(age + 2)).c_str(),
                                                     "%d:%d:%d", &hours, &minutes, &seconds) == 3) {
      assertion.started = now - hours * 3600 - minutes * 60 - seconds;
    }
    holds.push_back(std::move(assertion));
  }
  return holds;
}

constexpr double kNow = 1'780'000'000;

// sharingd and powerd are services, WindowServer too, and its type does not count. That leaves
// Amphetamine with two holds of 33:53:01, Claude with one of 6:35 under the old name of the type,
// and cloudd with one of 2 seconds.
TEST(SleepBlockersTest, AListingOfARealMachine) {
  const auto rows = SleepBlockers::blockers(
      listed(captureOr("06_assertions/m1pro_macos15.7.5_amphetamine_claude.txt",
                       R"log(   PreventUserIdleDisplaySleep    1
   pid 518(sharingd): [0x000259a300018f14] 00:04:00 PreventUserIdleSystemSleep named: "Handoff"
   pid 101(powerd): [0x00007e0a00018f21] 33:53:14 PreventUserIdleSystemSleep named: "Powerd - Prevent sleep while display is on"
   pid 157(WindowServer): [0x0002569500098c96] 00:00:00 UserIsActive named: "tickle"
	Timeout will fire in 600 secs Action=TimeoutActionRelease
   pid 5143(Amphetamine): [0x00007e1700018f76] 33:53:01 PreventUserIdleSystemSleep named: "Amphetamine (Single-Use - System)"
   pid 5143(Amphetamine): [0x00007e1700058f77] 33:53:01 PreventUserIdleDisplaySleep named: "Amphetamine (Single-Use - Display)"
   pid 23108(cloudd): [0x00025a9100018f4b] 00:00:02 PreventUserIdleSystemSleep named: "NSURLSessionTask 88EDFAB7-2E47-40CF-9300-C27EB376DA52"
   pid 91865(Claude): [0x0002590900018e5c] 00:06:35 NoIdleSleepAssertion named: "Electron"
)log"),
             kNow));
  EXPECT_EQ(rows, (std::vector<SleepBlocker>{
                      {5143,
                       "Amphetamine",
                       true,
                       true,
                       {"Amphetamine (Single-Use - System)", "Amphetamine (Single-Use - Display)"},
                       kNow - 121981},
                      {91865, "Claude", true, false, {"Electron"}, kNow - 395},
                      {23108,
                       "cloudd",
                       true,
                       false,
                       {"NSURLSessionTask 88EDFAB7-2E47-40CF-9300-C27EB376DA52"},
                       kNow - 2}}));
}

// 59:07:10 comes before 34:56:50, and that before all minutes; of the holds without an age, only
// one is of a type that counts. A Chrome helper has parentheses in its name.
TEST(SleepBlockersTest, ShapesOfRealHolds) {
  const auto rows = SleepBlockers::blockers(listed(
      captureOr(
          "06_assertions/misc_shapes.txt",
          R"log(   pid 3044(caffeinate): [0x0000003f000583ad] 34:56:50 PreventUserIdleDisplaySleep named: "caffeinate command-line tool"
   pid 5120(Google Chrome Helper (GPU)): [0x0001a35a0001959e] 00:10:00 PreventUserIdleDisplaySleep named: "WebRTC has active PeerConnections"
   pid 446(WindowServer): [0x000036c0000995cf] UserIsActive named: "com.apple.iohideventsystem.queue.tickle"
   pid 451(runningboardd): [0x00003857000196b4] 00:00:00 PreventUserIdleSystemSleep named: "osservice"
   pid 1705(caffeinate):   [0x000384e90001a3a0] 00:02:17 PreventUserIdleSystemSleep named: "caffeinate command-line tool"
   pid 2185(caffeinate): [0x000000ba00018282] 59:07:10 PreventUserIdleSystemSleep named: "caffeinate command-line tool"
   pid 57354(caffeinate): ... PreventUserIdleSystemSleep named: "caffeinate command-line tool" | Details: x
   pid 82265(Safari): [0x0029e3c00005a1c8] 00:17:09 PreventUserIdleDisplaySleep named: "com.apple.WebCore: HTMLMediaElement playback"
)log"),
      kNow));
  EXPECT_EQ(pids(rows), (Pids{2185, 3044, 82265, 5120, 1705, 451, 57354}));
  EXPECT_EQ(rows[3].processName, "Google Chrome Helper (GPU)");
  EXPECT_EQ(rows.back().since, std::nullopt);
}

// A disk hold of 416 hours does not count; the same tool's hold of minutes does.
TEST(SleepBlockersTest, AHoldOnTheDiskIsNoHoldOnSleep) {
  const auto rows = SleepBlockers::blockers(listed(
      captureOr(
          "06_assertions/long_held_caffeinate_lines.txt",
          R"log(   pid 58309(caffeinate): [0x003d099e000f97ba] 416:31:41 PreventDiskIdle named: "caffeinate command-line tool"
   pid 91053(caffeinate): [0x00539a4700018e2a] 00:02:53 PreventUserIdleSystemSleep named: "caffeinate command-line tool"
   pid 606(runningboardd): [0x00539af100018e93] 00:00:03 PreventUserIdleSystemSleep named: "app<x>"
)log"),
      kNow));
  EXPECT_EQ(pids(rows), (Pids{91053, 606}));
}

// Holds of the kernel and of services alone: nothing that the user can do something about.
TEST(SleepBlockersTest, ADesktopThatNoProcessKeepsAwake) {
  for (const auto* name :
       {"06_assertions/intel_2019_usb_kernel_assertions.txt",
        "06_assertions/mac_desktop_caffeinate_child_of_claude_externalmedia.txt"}) {
    const std::string text = captureOr(
        name,
        R"log(   pid 53(powerd): [0x000000e8001081b4] 00:04:30 InternalPreventDisplaySleep named: "delayDisplayOff"
   pid 57889(caffeinate): [0x000ec228000f8630] 01:50:26 PreventDiskIdle named: "caffeinate command-line tool"
   pid 344(powerd): [0x000edbfe000191cb] 00:00:12 PreventUserIdleSystemSleep named: "Powerd - Prevent sleep while display is on"
)log");
    ASSERT_FALSE(listed(text, kNow).empty()) << name;
    EXPECT_TRUE(SleepBlockers::blockers(listed(text, kNow)).empty()) << name;
  }
}

}  // namespace
}  // namespace embrix
