#include "entry/dump.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class DumpTest : public testing::Test {
 protected:
  DumpTest() {
    machine_.add(412, "/opt/tools/compiler");
    machine_.onTick = [this] {
      RawUsage& usage = *machine_.processes[0].raw.usage;
      usage.energyNJ = usage.energyNJ.value_or(0) + 6'200'000'000;  // 3.1 W over 2 seconds
      usage.userTime += 1'000'000'000;
    };
  }

  std::string report(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "embrix");
    Host host = machine_.host();
    return dump(host, arguments);
  }

  ScriptedHost machine_;
};

TEST_F(DumpTest, TheSecondTickIsReportedTwoSecondsAfterTheFirst) {
  EXPECT_EQ(report({"--dump"}),
            "system n/a  processes 3.1 W  temp –\n"
            "   3.10 W   50.0%  compiler\n"
            "       3.10 W   50.0%  compiler (412)\n");
  EXPECT_EQ(machine_.uptime, 1002);
  EXPECT_EQ(std::count(machine_.log.begin(), machine_.log.end(), "processes.read"), 2);
}

TEST_F(DumpTest, JSONWinsOverText) {
  EXPECT_THAT(report({"--dump", "--json"}), StartsWith("{\n  \"apps\" : [\n"));
  EXPECT_THAT(report({"--json", "--dump"}), HasSubstr("\"systemWatts\" : null"));
}

TEST_F(DumpTest, TheJSONReportEndsWithOneLineBreak) {
  const std::string json = report({"--json"});
  EXPECT_TRUE(json.ends_with("\n}\n"));
}

TEST_F(DumpTest, CleanupWinsOverBothAndTakesNoSample) {
  EXPECT_EQ(report({"--json", "--cleanup"}), "");
  EXPECT_EQ(report({"--dump", "--cleanup"}), "");
  // It asks the time, and what runs, so that no cache is taken from under its tool; nothing else.
  EXPECT_THAT(machine_.log, Each(AnyOf("clock.beginTick", "clock.wallTime",
                                       "commands.output /bin/ps -axo args=")));
  EXPECT_EQ(machine_.uptime, 1000);
}

TEST_F(DumpTest, ThrottleIsToldAsSerious) {
  EXPECT_THAT(report({"--json"}), HasSubstr("\"thermalState\" : \"nominal\""));
  EXPECT_THAT(report({"--json", "--throttle"}), HasSubstr("\"thermalState\" : \"serious\""));
}

TEST_F(DumpTest, ThePowerLogIsReadForTheTextAlone) {
  machine_.powerLog =
      "2026-03-01 22:00:00 +0000 Sleep               \tEntering Sleep Using BATT (Charge:84%)\n"
      "2026-03-02 06:00:00 +0000 Wake                \tWake from Deep Idle Using BATT "
      "(Charge:79%)\n";
  report({"--json"});
  EXPECT_THAT(machine_.log, Not(Contains(StartsWith("powerLog"))));
  EXPECT_THAT(report({"--dump"}), HasSubstr("\nlast sleep: 8h 0m · 0 dark wakes · 0s awake · "
                                            "charge 84→79% · causes  · asked by \n"));
}

TEST_F(DumpTest, AMachineThatTellsNothingStillHasItsReport) {
  Host host = absentHost();
  EXPECT_EQ(dump(host, {"embrix", "--dump"}), "system n/a  processes 0.0 W  temp –\n");
}

}  // namespace
}  // namespace embrix
