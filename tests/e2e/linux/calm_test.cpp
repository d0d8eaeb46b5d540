// The built program calms a real process by a rule, keeps its records, and gives the speed back
// when it is told to end.

#include <signal.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "base/base64.h"
#include "base/json.h"
#include "hosts/linux/calmed_process.h"
#include "program.h"

namespace embrix {
namespace {

class CalmTest : public ProgramTest {
 protected:
  // Samples every second, and a rule for the burner.
  void writeSettings() const {
    const std::string rules =
        R"([{"id":"6F1F1A0E-0000-4000-8000-000000000000","name":"burner","condition":"always"}])";
    const Json settings = {{"sampleInterval", 1},
                           {"showWattsInMenuBar", true},
                           {"calmRules", {{"data", base64(rules)}}}};
    std::filesystem::create_directories(configFolder_ / "embrix");
    configFolder_.write("embrix/settings.json", settings.dump());
  }

  static bool isSlowed(pid_t pid, const ThreadRights& before) {
    const auto now = ThreadRights::of(pid);
    return now && now->io == kIdleIoPriority && now->cpus.isWithin(before.cpus) &&
           (now->cpus != before.cpus || before.cpus.numbers().size() == 1);
  }

  static void expectSame(pid_t pid, const ThreadRights& before) {
    const auto now = ThreadRights::of(pid);
    ASSERT_TRUE(now.has_value());
    EXPECT_EQ(now->cpus, before.cpus);
    EXPECT_EQ(now->io, before.io);
  }
};

TEST_F(CalmTest, ARuleSlowsAProcessAndTheEndOfTheRunGivesItsSpeedBack) {
  writeSettings();
  const ChildProcess burner({EMBRIX_BURNER});
  const auto before = ThreadRights::of(burner.pid());
  ASSERT_TRUE(before.has_value());
  RunningProgram program = running({"--background"});
  // It has looked at the machine at least twice when that is so.
  while (!isSlowed(burner.pid(), *before)) {
    ASSERT_EQ(::kill(program.pid(), 0), 0);
    std::this_thread::yield();
  }
  program.signal(SIGTERM);
  const Outcome outcome = program.end();
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.complaints, "");
  expectSame(burner.pid(), *before);
}

TEST_F(CalmTest, WatchTellsOfItAndHalfAMinuteLaterTheRecordsAreThere) {
  writeSettings();
  const ChildProcess burner({EMBRIX_BURNER});
  const auto before = ThreadRights::of(burner.pid());
  ASSERT_TRUE(before.has_value());
  RunningProgram program = running({"--watch"});
  const std::string records = dataFolder_ / "Embrix";
  bool isTold = false;
  bool isKept = false;
  // Records are written every 30 seconds, and the last of them is the baseline.
  for (int line = 0; line < 60 && !isKept; ++line) {
    const auto text = program.readLine();
    ASSERT_TRUE(text.has_value());
    const Json told = parseJson(*text).value_or(Json());
    isTold = isTold || told["calmed"] == Json::array({burner.pid()});
    isKept = std::filesystem::exists(records + "/baseline.json");
  }
  EXPECT_TRUE(isTold);
  ASSERT_TRUE(isKept);
  for (const char* name : {"history.json", "today.json", "archive.json", "baseline.json"}) {
    std::ostringstream text;
    text << std::ifstream(records + "/" + name).rdbuf();
    EXPECT_TRUE(parseJson(text.str()).has_value()) << name;
  }
  program.closeOutput();
  EXPECT_EQ(program.end().exitStatus, 0);
  expectSame(burner.pid(), *before);
}

}  // namespace
}  // namespace embrix
