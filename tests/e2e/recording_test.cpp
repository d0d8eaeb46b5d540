// A recording of this machine tells the same when it is replayed.

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class RecordingTest : public ProgramTest {
 protected:
  std::string path() const { return folder_ / "recording"; }

  void expectTheSameReplayed(const std::string& report) const {
    const ChildProcess burner({EMBRIX_BURNER});
    const Outcome live = embrix({report, "--record", path()});
    EXPECT_EQ(live.exitStatus, 0);
    EXPECT_EQ(live.complaints, "");
    EXPECT_NE(live.output, "");
    for (int run = 0; run < 2; ++run) {
      const Outcome replayed = embrix({"--replay", path(), report});
      EXPECT_EQ(replayed.exitStatus, 0);
      EXPECT_EQ(replayed.complaints, "");
      EXPECT_EQ(replayed.output, live.output);
    }
  }
};

TEST_F(RecordingTest, TheTextReportIsTheSameToTheByte) {
  expectTheSameReplayed("--dump");
}

TEST_F(RecordingTest, TheJSONReportIsTheSameToTheByte) {
  expectTheSameReplayed("--json");
}

TEST_F(RecordingTest, TheCleanupReportIsTheSameToTheByte) {
  std::filesystem::create_directories(homeFolder_ / ".gradle/caches/8.7");
  homeFolder_.write(".gradle/caches/8.7/x", std::string(3'000'000, 'x'));
  const Outcome live = embrix({"--dump", "--cleanup", "--record", path()});
  EXPECT_THAT(live.output, StartsWith("Gradle caches · 3 MB\n"));
  std::filesystem::remove_all(homeFolder_ / ".gradle");
  EXPECT_EQ(embrix({"--dump", "--cleanup", "--replay", path()}).output, live.output);
}

TEST_F(RecordingTest, ARecordingOfAReplayTellsTheSame) {
  const Outcome live = embrix({"--json", "--record", path()});
  const std::string second = folder_ / "second";
  EXPECT_EQ(embrix({"--json", "--replay", path(), "--record", second}).output, live.output);
  EXPECT_EQ(embrix({"--json", "--replay", second}).output, live.output);
}

TEST_F(RecordingTest, AReportThatNobodyReadsIsNotPrintedIntoTheRecording) {
  const Outcome live = embrix({"--json", "--record", path()});
  const std::string second = folder_ / "second";
  const Outcome unread =
      outcomeOf({"/bin/sh", "-c", "exec \"$0\" --json --replay \"$1\" --record \"$2\" <&- >&-",
                 EMBRIX_PROGRAM, path(), second});
  EXPECT_EQ(unread.exitStatus, 0);
  EXPECT_EQ(unread.complaints, "");
  EXPECT_EQ(embrix({"--json", "--replay", second}).output, live.output);
}

TEST_F(RecordingTest, AFileThatMayNotGrowIsOneSentenceBehindTheReport) {
  const Outcome limited = outcomeOf(
      {"/bin/sh", "-c", "ulimit -f 0; exec \"$0\" --json --record \"$1\"", EMBRIX_PROGRAM, path()});
  EXPECT_EQ(limited.exitStatus, 2);
  EXPECT_THAT(limited.output, StartsWith("{\n  \"apps\" : ["));
  EXPECT_EQ(limited.complaints, "embrix: cannot record to " + path() + ": File too large.\n");
}

TEST_F(RecordingTest, AReplayedRunTakesTheOptionsOfItsOwnCommandLine) {
  embrix({"--json", "--record", path()});
  EXPECT_THAT(embrix({"--json", "--replay", path(), "--throttle"}).output,
              HasSubstr("\"thermalState\" : \"serious\""));
}

}  // namespace
}  // namespace embrix
