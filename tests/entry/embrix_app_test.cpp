#include "entry/embrix_app.h"

#include <cerrno>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/scratch_folder.h"
#include "fakes/scripted_host.h"
#include "fakes/scripted_session.h"
#include "memory_settings_stores.h"
#include "model/control_state.h"

namespace embrix {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class EmbrixAppTest : public testing::Test {
 protected:
  int run(std::vector<std::string> arguments) {
    printed_.clear();
    complaints_.clear();
    arguments.insert(arguments.begin(), "embrix");
    return EmbrixApp::run(arguments,
                          {.host = [this] { return machine_.host(); },
                           .session = session_,
                           .log = log_,
                           .settings = stores_,
                           .identifier = std::nullopt,
                           .windows = [] { return "there are none here"; },
                           .print =
                               [this](std::string_view text) {
                                 printed_ += text;
                                 return true;
                               },
                           .complain = [this](std::string_view text) { complaints_ += text; }});
  }

  ScriptedHost machine_;
  // Few of these runs have them.
  std::function<Session()> session_;
  std::function<std::unique_ptr<Log>()> log_;
  MemorySettingsStores stores_;
  ScratchFolder folder_;
  std::string printed_;
  std::string complaints_;
};

TEST_F(EmbrixAppTest, AReportIsPrintedAndNothingElse) {
  EXPECT_EQ(run({"--dump"}), 0);
  EXPECT_EQ(printed_, "system n/a  processes 0.0 W  temp –\n");
  EXPECT_EQ(complaints_, "");
}

TEST_F(EmbrixAppTest, AReportTouchesNoSettings) {
  run({"--json", "--ui-testing", "--set", "warmWatts=5"});
  EXPECT_THAT(stores_.opened, IsEmpty());
}

TEST_F(EmbrixAppTest, ATextReportTellsWhatTheControlShows) {
  ControlState{.watts = 13, .subject = {}, .hot = true, .throttling = false}.save(
      &stores_.suites[std::string(ControlState::kSuite)]);
  EXPECT_EQ(run({"--dump"}), 0);
  EXPECT_THAT(printed_, HasSubstr("\ncontrol center: 13 W · Warm\n"));
}

TEST_F(EmbrixAppTest, ARecordedReportDoesNotForNeitherDoesItsReplay) {
  ControlState{.watts = 13, .subject = {}, .hot = true, .throttling = false}.save(
      &stores_.suites[std::string(ControlState::kSuite)]);
  run({"--dump", "--record", folder_ / "recording"});
  EXPECT_THAT(printed_, Not(HasSubstr("control center")));
  run({"--dump", "--replay", folder_ / "recording"});
  EXPECT_THAT(printed_, Not(HasSubstr("control center")));
  EXPECT_THAT(stores_.opened, IsEmpty());
}

TEST_F(EmbrixAppTest, AnyOtherRunWantsWindowsAndIsOneSentenceWhereThereAreNone) {
  const std::vector<std::vector<std::string>> rows = {{},
                                                      {"--cleanup"},
                                                      {"--throttle"},
                                                      {"--icon"},
                                                      {"--snapshot"},
                                                      {"--live"},
                                                      {"dump"},
                                                      {"--icon", "icon.png"},
                                                      {"--snapshot", "pictures"},
                                                      {"--ui-testing"}};
  for (const auto& arguments : rows) {
    EXPECT_EQ(run(arguments), 2);
    EXPECT_EQ(printed_, "");
    EXPECT_EQ(complaints_, "embrix: there are none here.\n");
  }
  EXPECT_THAT(machine_.log, IsEmpty());
  EXPECT_THAT(stores_.opened, IsEmpty());
}

TEST_F(EmbrixAppTest, HelpAndVersionTouchNothing) {
  EXPECT_EQ(run({"--json", "--help"}), 0);
  EXPECT_THAT(printed_, HasSubstr("Options:\n"));
  EXPECT_EQ(run({"--version", "--dump"}), 0);
  EXPECT_THAT(printed_, StartsWith("embrix "));
  EXPECT_THAT(machine_.log, IsEmpty());
  EXPECT_THAT(stores_.opened, IsEmpty());
}

TEST_F(EmbrixAppTest, AReplayedRecordingStandsInForTheMachine) {
  machine_.hasBattery = true;
  machine_.batteryRegistry =
      PropertyMap{{"PowerTelemetryData", PropertyMap{{"SystemLoad", 12500}}}};
  EXPECT_EQ(run({"--dump", "--record", folder_ / "recording"}), 0);
  const std::string live = printed_;
  machine_.log.clear();
  EXPECT_EQ(run({"--dump", "--replay", folder_ / "recording"}), 0);
  EXPECT_EQ(printed_, live);
  EXPECT_THAT(machine_.log, IsEmpty());
}

TEST_F(EmbrixAppTest, ADamagedRecordingIsOneSentenceUnderAnyRun) {
  folder_.write("recording", "no recording");
  const std::vector<std::vector<std::string>> rows = {{"--dump"}, {"--json"}, {}, {"--ui-testing"}};
  for (std::vector<std::string> arguments : rows) {
    arguments.insert(arguments.end(), {"--replay", folder_ / "recording"});
    EXPECT_EQ(run(arguments), 2);
    EXPECT_EQ(printed_, "");
    EXPECT_THAT(complaints_, StartsWith("embrix: "));
    EXPECT_THAT(complaints_, EndsWith(".\n"));
  }
  EXPECT_THAT(machine_.log, IsEmpty());
  EXPECT_THAT(stores_.opened, IsEmpty());
}

TEST_F(EmbrixAppTest, ARecordingThatCannotBeMadeIsOneSentenceBeforeAnySample) {
  EXPECT_EQ(run({"--dump", "--record", folder_ / "missing/recording"}), 2);
  EXPECT_EQ(printed_, "");
  EXPECT_THAT(complaints_, StartsWith("embrix: "));
  EXPECT_THAT(machine_.log, IsEmpty());
}

TEST_F(EmbrixAppTest, ARecordingIsNotWrittenOverWhileItIsReplayed) {
  run({"--dump", "--record", folder_ / "recording"});
  const std::string bytes = folder_.read("recording");
  EXPECT_EQ(run({"--dump", "--replay", folder_ / "recording", "--record", folder_ / "recording"}),
            2);
  EXPECT_EQ(printed_, "");
  EXPECT_EQ(folder_.read("recording"), bytes);
}

TEST_F(EmbrixAppTest, ASystemThatHasNothingLeftIsOneSentence) {
  session_ = []() -> Session {
    throw std::system_error(EMFILE, std::generic_category(), "the loop cannot be made");
  };
  stores_.suites.clear();
  machine_.user.applicationSupportDirectory = folder_ / "data";
  log_ = [] { return std::make_unique<ScriptedLog>(); };
  EXPECT_EQ(run({"--background"}), 2);
  EXPECT_EQ(complaints_, "embrix: the loop cannot be made: Too many open files.\n");
  EXPECT_EQ(printed_, "");
}

TEST_F(EmbrixAppTest, RecordOrReplayAsTheLastArgumentIsIgnored) {
  for (const char* option : {"--record", "--replay"}) {
    EXPECT_EQ(run({"--dump", option}), 0);
    EXPECT_THAT(printed_, StartsWith("system n/a"));
  }
}

}  // namespace
}  // namespace embrix
