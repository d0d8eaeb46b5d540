// A machine that was recorded, and what its recording says was left running.

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "entry/dump.h"
#include "fakes/scratch_folder.h"
#include "fakes/scripted_host.h"
#include "hosts/replay/recording_host.h"
#include "hosts/replay/recording_writer.h"
#include "hosts/replay/replay_host.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::Not;

class LeftRunningTest : public testing::Test {
 protected:
  // The report of a replayed machine on which a server has been up for so long when it is scanned.
  std::string replayedReport(double minutesUp) {
    ScriptedHost world;
    ScriptedProcess& server = world.add(77, "/opt/homebrew/bin/node");
    server.arguments = {"node", "/Users/ada/code/shop/node_modules/.bin/vite", "dev"};
    server.directory = "/Users/ada/code/shop";
    server.listening = {{5173, false}};
    // The scan comes with the second tick, two seconds after the first.
    server.raw.startTime = static_cast<std::uint64_t>(world.wallTime + 2 - minutesUp * 60);

    const std::string path = folder_.path() + "/machine.jsonl";
    auto writer = std::get<std::shared_ptr<RecordingWriter>>(RecordingWriter::open(path));
    {
      Host recorded = recordingHost(world.host(), writer);
      live_ = dump(recorded, {"embrix", "--dump"});
    }
    EXPECT_EQ(writer->problem(), "");
    Replay replay = std::get<Replay>(openReplay(path));
    return dump(replay.host, {"embrix", "--dump"});
  }

  ScratchFolder folder_;
  std::string live_;
};

TEST_F(LeftRunningTest, ServerOfSixtyOneMinutesIsForgotten) {
  const std::string report = replayedReport(61);
  EXPECT_THAT(report, HasSubstr("forgotten: vite dev · shop · ports [5173] · up 61m · 1 proc\n"));
  EXPECT_EQ(report, live_);
}

TEST_F(LeftRunningTest, ServerOfFiftyNineMinutesIsOnlyAServer) {
  const std::string report = replayedReport(59);
  EXPECT_THAT(report, Not(HasSubstr("forgotten:")));
  EXPECT_THAT(report, HasSubstr("server: vite dev · shop · ports [5173] · pid 77\n"));
  EXPECT_EQ(report, live_);
}

}  // namespace
}  // namespace embrix
