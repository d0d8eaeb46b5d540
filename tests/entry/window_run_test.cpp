// Runs with windows, from the command line to the exit status; the windows themselves are the
// test's.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "entry/embrix_app.h"
#include "fakes/manual_loop.h"
#include "fakes/scratch_folder.h"
#include "fakes/scripted_host.h"
#include "fakes/scripted_session.h"
#include "memory_settings_stores.h"
#include "surfaces/window_module.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// What the module was asked for. Its functions know no test, so this one is everybody's.
struct Asked {
  std::vector<std::string> log;
  std::function<void(const WindowRun&)> look = [](const WindowRun&) {};
  bool hasScreen = true;
  bool writes = true;
} asked;

constexpr WindowModule kWindows = {
    .run =
        [](const WindowRun& run) {
          if (!asked.hasScreen) return false;
          asked.log.emplace_back("run");
          asked.look(run);
          return true;
        },
    .snapshot =
        [](PowerModel& model, Scheduler&, const std::string& folder) {
          asked.log.push_back((*model.isFixture() ? "demo into " : "into ") + folder);
          return asked.writes;
        },
    .renderIcon =
        [](const std::string& path) {
          asked.log.push_back("icon into " + path);
          return asked.writes;
        },
};

class WindowRunTest : public testing::Test {
 protected:
  WindowRunTest() {
    asked = {};
    machine_.user.applicationSupportDirectory = support_.path();
  }

  int run(std::vector<std::string> arguments) {
    complaints_.clear();
    arguments.insert(arguments.begin(), "embrix");
    return EmbrixApp::run(arguments,
                          {.host = [this] { return machine_.host(); },
                           .session = [] { return absentSession(std::make_unique<ManualLoop>()); },
                           .log = [] { return std::make_unique<ScriptedLog>(); },
                           .settings = stores_,
                           .identifier = std::nullopt,
                           .windows = [] { return &kWindows; },
                           .print = [](std::string_view) { return true; },
                           .complain = [this](std::string_view text) { complaints_ += text; }});
  }

  ScriptedHost machine_;
  MemorySettingsStores stores_;
  ScratchFolder support_;
  ScratchFolder folder_;
  std::string complaints_;
};

TEST_F(WindowRunTest, AnOrdinaryRunShowsThisMachine) {
  asked.look = [](const WindowRun& run) {
    EXPECT_FALSE(*run.model.isFixture());
    EXPECT_FALSE(run.isTestRun);
    EXPECT_THAT(run.arguments, ElementsAre("embrix", "--dashboard", "battery"));
    EXPECT_TRUE(run.model.defaults().boolFor("showWattsInMenuBar"));
  };
  EXPECT_EQ(run({"--dashboard", "battery"}), 0);
  EXPECT_THAT(asked.log, ElementsAre("run"));
  EXPECT_EQ(complaints_, "");
}

TEST_F(WindowRunTest, ATestRunShowsDemoDataAndReadsNoMachine) {
  asked.look = [](const WindowRun& run) {
    EXPECT_TRUE(*run.model.isFixture());
    EXPECT_TRUE(run.isTestRun);
  };
  EXPECT_EQ(run({"--ui-testing"}), 0);
  EXPECT_THAT(machine_.log, IsEmpty());
}

TEST_F(WindowRunTest, ALiveTestRunShowsThisMachine) {
  asked.look = [](const WindowRun& run) {
    EXPECT_FALSE(*run.model.isFixture());
    EXPECT_TRUE(run.isTestRun);
  };
  EXPECT_EQ(run({"--ui-testing", "--live"}), 0);
  EXPECT_THAT(machine_.log, Not(IsEmpty()));
  asked.look = [](const WindowRun& run) {
    EXPECT_FALSE(*run.model.isFixture());
    EXPECT_FALSE(run.isTestRun);
  };
  EXPECT_EQ(run({"--live"}), 0) << "without --ui-testing it has no effect";
  EXPECT_THAT(asked.log, ElementsAre("run", "run"));
}

TEST_F(WindowRunTest, AnOrdinaryRunSetsNothing) {
  run({"--set", "warmWatts=5"});
  EXPECT_EQ(stores_.suites[""].stored("warmWatts"), std::nullopt);
  EXPECT_EQ(stores_.suites[""].stored("sampleInterval"), std::nullopt);
}

TEST_F(WindowRunTest, ATestRunSetsItsOwnSettings) {
  run({"--ui-testing", "--live", "--set", "warmWatts=5"});
  EXPECT_THAT(stores_.opened, ElementsAre("app.embrix.uitesting"));
  EXPECT_EQ(stores_.suites["app.embrix.uitesting"].stored("warmWatts"), SettingValue(5.0));
}

TEST_F(WindowRunTest, PicturesAreOfDemoDataAndTouchNothingOfTheUsers) {
  EXPECT_EQ(run({"--snapshot", "pictures"}), 0);
  EXPECT_THAT(asked.log, ElementsAre("demo into pictures"));
  EXPECT_THAT(stores_.opened, IsEmpty());
  EXPECT_THAT(machine_.log, IsEmpty());
  EXPECT_THAT(support_.names(), IsEmpty());
}

TEST_F(WindowRunTest, PicturesThatCannotBeWrittenAreOneSentence) {
  asked.writes = false;
  EXPECT_EQ(run({"--snapshot", "a\x1b[1mfolder"}), 2);
  EXPECT_EQ(complaints_.find('\x1b'), std::string::npos);
  EXPECT_TRUE(complaints_.starts_with("embrix: the pictures cannot be written into "));
}

TEST_F(WindowRunTest, AnIconThatCannotBeWrittenIsNoMatter) {
  EXPECT_EQ(run({"--icon", "icon.png"}), 0);
  asked.writes = false;
  EXPECT_EQ(run({"--icon", "/nowhere/icon.png"}), 0);
  EXPECT_THAT(asked.log, ElementsAre("icon into icon.png", "icon into /nowhere/icon.png"));
  EXPECT_EQ(complaints_, "");
}

TEST_F(WindowRunTest, AnOptionWithoutItsValueIsAnOrdinaryRun) {
  run({"--icon"});
  run({"--snapshot"});
  EXPECT_THAT(asked.log, ElementsAre("run", "run"));
}

TEST_F(WindowRunTest, WithoutAScreenOneSentenceNamesTheRunThatNeedsNone) {
  asked.hasScreen = false;
  EXPECT_EQ(run({}), 2);
  EXPECT_EQ(complaints_,
            "embrix: there is no screen to show a window on; --background runs without one.\n");
}

TEST_F(WindowRunTest, ReportsAndBackgroundRunsLoadNoWindows) {
  EXPECT_EQ(run({"--dump"}), 0);
  EXPECT_EQ(run({"--background"}), 0);
  EXPECT_EQ(run({"--snapshot", "pictures", "--json"}), 0) << "a report wins";
  EXPECT_THAT(asked.log, IsEmpty());
}

}  // namespace
}  // namespace embrix
