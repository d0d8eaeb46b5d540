// A recording of this machine tells the same when it is replayed.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::Not;

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

TEST_F(RecordingTest, ARecordingOfAReplayTellsTheSame) {
  const Outcome live = embrix({"--json", "--record", path()});
  const std::string second = folder_ / "second";
  EXPECT_EQ(embrix({"--json", "--replay", path(), "--record", second}).output, live.output);
  EXPECT_EQ(embrix({"--json", "--replay", second}).output, live.output);
}

TEST_F(RecordingTest, AReplayedRunTakesTheOptionsOfItsOwnCommandLine) {
  embrix({"--json", "--record", path()});
  EXPECT_THAT(embrix({"--json", "--replay", path(), "--throttle"}).output,
              HasSubstr("\"thermalState\" : \"serious\""));
}

}  // namespace
}  // namespace embrix
