// Runs of --background and --watch, from the command line to the exit status.

#include "entry/model_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/json.h"
#include "entry/embrix_app.h"
#include "entry/records_lock.h"
#include "fakes/manual_loop.h"
#include "fakes/scratch_folder.h"
#include "fakes/scripted_host.h"
#include "fakes/scripted_notifier.h"
#include "fakes/scripted_process_control.h"
#include "fakes/scripted_session.h"
#include "memory_settings_stores.h"
#include "model/calm_rule.h"
#include "model/control_state.h"
#include "model/setting_keys.h"

namespace embrix {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class ForwardedControl final : public ProcessControl {
 public:
  explicit ForwardedControl(ScriptedProcessControl& to) : to_(to) {}
  int calm(const ProcessIdentity& process) override { return to_.calm(process); }
  int restore(const ProcessIdentity& process) override { return to_.restore(process); }
  int terminate(const ProcessIdentity& process) override { return to_.terminate(process); }

 private:
  ScriptedProcessControl& to_;
};

constexpr double kWallTime = 1'750'000'000;

class ModelRunTest : public testing::Test {
 protected:
  ModelRunTest() {
    machine_.user.applicationSupportDirectory = support_.path();
    machine_.wallTime = kWallTime;
    addWorker(412, "/usr/local/bin/burner");
  }

  // A process of the user that draws 5 W.
  void addWorker(std::int32_t pid, const std::string& path) {
    ScriptedProcess& process = machine_.add(pid, path);
    process.raw.usage = RawUsage{.energyNJ = 0};
    control_.living.insert({pid, static_cast<std::int64_t>(process.raw.startTime)});
  }

  void letASecondGoBy() {
    machine_.uptime += 1;
    machine_.wallTime += 1;
    for (ScriptedProcess& process : machine_.processes) {
      *process.raw.usage->energyNJ += 5'000'000'000;
      process.raw.usage->userTime += 500'000'000;
    }
    if (onSecond_) onSecond_();
  }

  Session session() {
    ++sessions_;
    auto loop = std::make_unique<ManualLoop>();
    loop->scheduler().wall = machine_.wallTime;
    loop->secondsToEnd = seconds_;
    loop->onSecond = [this] { letASecondGoBy(); };
    auto events = std::make_unique<ScriptedSessionEvents>();
    loop->onEnd = [this, told = events.get()] {
      calmAtEnd_ = control_.background;
      told->terminate();
    };
    auto actions = std::make_unique<ScriptedActionService>();
    loop->scheduler()
        .after(0, [this, offered = actions.get()] { actions_ = offered->actions.size(); })
        .detach();
    Session session = absentSession(std::move(loop));
    session.control = std::make_unique<ForwardedControl>(control_);
    session.events = std::move(events);
    session.actions = std::move(actions);
    return session;
  }

  int run(std::vector<std::string> arguments) {
    printed_.clear();
    complaints_.clear();
    arguments.insert(arguments.begin(), "embrix");
    return EmbrixApp::run(arguments,
                          {.host = [this] { return machine_.host(); },
                           .session = [this] { return session(); },
                           .log = [] { return std::make_unique<ScriptedLog>(); },
                           .settings = stores_,
                           .identifier = "app.embrix.Embrix",
                           .print =
                               [this](std::string_view text) {
                                 printed_ += text;
                                 return --linesRead_ != 0;
                               },
                           .complain = [this](std::string_view text) { complaints_ += text; }});
  }

  std::vector<Json> lines() const {
    std::vector<Json> lines;
    std::size_t at = 0;
    while (at < printed_.size()) {
      const std::size_t end = printed_.find('\n', at);
      lines.push_back(parseJson(printed_.substr(at, end - at)).value_or(Json()));
      at = end + 1;
    }
    return lines;
  }

  bool hasRecords(const std::string& folder) const {
    for (const char* name : {"history.json", "today.json", "archive.json", "baseline.json"}) {
      if (!std::filesystem::exists(std::filesystem::path(folder) / name)) return false;
    }
    return true;
  }

  ScriptedHost machine_;
  ScratchFolder support_;
  ScratchFolder folder_;
  MemorySettingsStores stores_;
  ScriptedProcessControl control_;
  std::function<void()> onSecond_;
  double seconds_ = 60;
  int linesRead_ = 0;  // the reader goes away after so many; 0: never
  int sessions_ = 0;
  std::size_t actions_ = 0;
  std::set<ProcessIdentity> calmAtEnd_;
  std::string printed_;
  std::string complaints_;
};

TEST_F(ModelRunTest, TheBackgroundRunPrintsNothingAndKeepsTheRecords) {
  EXPECT_EQ(run({"--background"}), 0);
  EXPECT_EQ(printed_, "");
  EXPECT_EQ(complaints_, "");
  EXPECT_TRUE(hasRecords(support_ / "Embrix"));
  EXPECT_EQ(sessions_, 1);
}

TEST_F(ModelRunTest, WatchPrintsALineOfJSONForEachFrame) {
  seconds_ = 9;
  EXPECT_EQ(run({"--watch"}), 0);
  const auto told = lines();
  // At 2, 4, 6 and 8 seconds; the first tick takes the baseline.
  ASSERT_THAT(told, SizeIs(4));
  EXPECT_EQ(told[0]["time"], kWallTime + 2);
  EXPECT_EQ(told[3]["time"], kWallTime + 8);
  EXPECT_EQ(told[3]["totalWatts"], 5);
  EXPECT_EQ(told[3]["loadLevel"], "calm");
  EXPECT_THAT(std::string(told[3]["verdict"]), HasSubstr("burner"));
  EXPECT_THAT(printed_, EndsWith("}\n"));
}

TEST_F(ModelRunTest, BackgroundAndWatchTogetherWatch) {
  seconds_ = 5;
  EXPECT_EQ(run({"--background", "--watch"}), 0);
  EXPECT_THAT(lines(), SizeIs(2));
}

TEST_F(ModelRunTest, AReaderWhoGoesAwayEndsTheRunInTheOrderlyWay) {
  seconds_ = 1000;
  linesRead_ = 3;
  EXPECT_EQ(run({"--watch"}), 0);
  EXPECT_THAT(lines(), SizeIs(3));
  EXPECT_EQ(complaints_, "");
}

TEST_F(ModelRunTest, WithNobodyLookingASampleIsTakenEveryTenSeconds) {
  seconds_ = 101;
  run({"--background"});
  EXPECT_EQ(std::count(machine_.log.begin(), machine_.log.end(), "processes.read"), 11);
}

TEST_F(ModelRunTest, UnlessTheUserSetIt) {
  stores_.suites[""].set(SettingKeys::kShowWattsInMenuBar, true);
  stores_.suites[""].set(SettingKeys::kSampleInterval, 5.0);
  seconds_ = 101;
  run({"--background"});
  EXPECT_EQ(std::count(machine_.log.begin(), machine_.log.end(), "processes.read"), 21);
}

TEST_F(ModelRunTest, RecordsGoWhereTheyAreSent) {
  EXPECT_EQ(run({"--background", "--records", folder_ / "deep/records"}), 0);
  EXPECT_TRUE(hasRecords(folder_ / "deep/records"));
  EXPECT_THAT(support_.names(), IsEmpty());
  // As the last argument it names nothing.
  EXPECT_EQ(run({"--background", "--records"}), 0);
  EXPECT_TRUE(hasRecords(support_ / "Embrix"));
}

TEST_F(ModelRunTest, ASecondRunOnTheSameRecordsIsRefusedInOneSentence) {
  const RecordsLock lock(folder_ / "records");
  EXPECT_EQ(run({"--background", "--records", folder_ / "records"}), 2);
  EXPECT_EQ(complaints_,
            "embrix: another Embrix keeps its records in " + (folder_ / "records") + ".\n");
  EXPECT_EQ(printed_, "");
  EXPECT_EQ(sessions_, 0);
  EXPECT_EQ(run({"--background", "--records", folder_ / "others"}), 0);
}

TEST_F(ModelRunTest, AFolderThatCannotBeMadeDoesNotStopTheRun) {
  folder_.write("file", "");
  EXPECT_EQ(run({"--watch", "--records", folder_ / "file/records"}), 0);
  EXPECT_EQ(complaints_, "");
  EXPECT_THAT(lines(), Not(IsEmpty()));
}

TEST_F(ModelRunTest, TheFormerFolderAndSettingsAreCarriedOverFirst) {
  std::filesystem::create_directories(support_ / "Torvane");
  stores_.suites["com.torvane.app"].set(SettingKeys::kSampleInterval, 4.0);
  seconds_ = 9;
  EXPECT_EQ(run({"--watch"}), 0);
  EXPECT_FALSE(std::filesystem::exists(support_ / "Torvane"));
  EXPECT_TRUE(std::filesystem::exists(support_ / "Embrix"));
  EXPECT_EQ(stores_.suites[""].stored(SettingKeys::kSampleInterval), SettingValue(4.0));
  EXPECT_THAT(lines(), SizeIs(2));  // in force at once
}

TEST_F(ModelRunTest, ATestRunCarriesNothingOverAndHasSettingsOfItsOwn) {
  std::filesystem::create_directories(support_ / "Torvane");
  stores_.suites["com.torvane.app"].set(SettingKeys::kSampleInterval, 4.0);
  stores_.suites[""].set(SettingKeys::kSampleInterval, 5.0);
  seconds_ = 7;
  EXPECT_EQ(run({"--watch", "--ui-testing", "--set", "sampleInterval=3", "--records",
                 folder_ / "records"}),
            0);
  EXPECT_TRUE(std::filesystem::exists(support_ / "Torvane"));
  EXPECT_THAT(stores_.opened, ElementsAre("app.embrix.uitesting"));
  EXPECT_THAT(lines(), SizeIs(2));
}

TEST_F(ModelRunTest, NoDefaultIsEverWritten) {
  run({"--background"});
  EXPECT_THAT(stores_.suites[""].values(), IsEmpty());
}

TEST_F(ModelRunTest, TheStateOfTheControlIsPublished) {
  run({"--watch"});
  const auto state = ControlState::load(&stores_.suites[std::string(ControlState::kSuite)]);
  ASSERT_TRUE(state.has_value());
  EXPECT_EQ(state->watts, 5);
}

TEST_F(ModelRunTest, TheActionsAreOffered) {
  run({"--background"});
  EXPECT_EQ(actions_, 5U);
}

TEST_F(ModelRunTest, CalmedProcessesAreToldAndHaveTheirSpeedBackAtTheEnd) {
  stores_.suites[""].set(
      SettingKeys::kCalmRules,
      SettingData{CalmRule::encode({{.id = CalmRule::freshID(), .name = "Burner"}})});
  seconds_ = 9;
  EXPECT_EQ(run({"--watch"}), 0);
  EXPECT_EQ(lines().back()["calmed"], Json::array({412}));
  EXPECT_THAT(calmAtEnd_, SizeIs(1));
  EXPECT_THAT(control_.background, IsEmpty());
}

TEST_F(ModelRunTest, RunawaysAndAlertsAreToldWhenTheyCome) {
  stores_.suites[""].set(SettingKeys::kRunawayNotifications, true);
  stores_.suites[""].set(SettingKeys::kAlertMinutes, 1.0);
  seconds_ = 100;
  EXPECT_EQ(run({"--watch"}), 0);
  const auto told = lines();
  ASSERT_THAT(told, SizeIs(testing::Gt(35U)));
  EXPECT_EQ(told.front()["runaways"], Json::array());
  EXPECT_EQ(told.back()["runaways"].size(), 1U);
  std::size_t alerts = 0;
  for (const Json& line : told) alerts += line["alerts"].size();
  EXPECT_EQ(alerts, 1U);
  const std::string key = told.back()["runaways"][0];
  const auto withAlert = std::find_if(told.begin(), told.end(),
                                      [](const Json& line) { return !line["alerts"].empty(); });
  EXPECT_EQ((*withAlert)["alerts"], Json::array({"hot-" + key}));
}

TEST_F(ModelRunTest, TheThermalStateCanBeMadeSerious) {
  stores_.suites[""].set(
      SettingKeys::kCalmRules,
      SettingData{CalmRule::encode({{.id = CalmRule::freshID(),
                                     .name = "burner",
                                     .condition = CalmRule::Condition::whenHot}})});
  seconds_ = 9;
  run({"--watch"});
  EXPECT_EQ(lines().back()["calmed"], Json::array());
  run({"--watch", "--throttle"});
  EXPECT_EQ(lines().back()["calmed"], Json::array({412}));
}

TEST_F(ModelRunTest, ARecordedRunCanBeReplayedLineByLine) {
  seconds_ = 40;
  EXPECT_EQ(run({"--watch", "--record", folder_ / "recording"}), 0);
  const std::string live = printed_;
  EXPECT_THAT(lines(), SizeIs(20));
  EXPECT_EQ(run({"--watch", "--replay", folder_ / "recording"}), 0);
  EXPECT_EQ(printed_, live);
}

TEST_F(ModelRunTest, AReplayTouchesNothingOfThisMachine) {
  seconds_ = 90;
  stores_.suites[""].set(
      SettingKeys::kCalmRules,
      SettingData{CalmRule::encode({{.id = CalmRule::freshID(), .name = "burner"}})});
  run({"--watch", "--record", folder_ / "recording"});
  EXPECT_EQ(lines().back()["calmed"], Json::array({412}));
  std::filesystem::remove_all(support_ / "Embrix");
  std::filesystem::create_directories(support_ / "Torvane");
  machine_.log.clear();
  stores_.opened.clear();
  control_.log.clear();
  sessions_ = 0;
  EXPECT_EQ(run({"--watch", "--replay", folder_ / "recording"}), 0);
  EXPECT_THAT(lines(), SizeIs(45));
  EXPECT_EQ(lines().back()["calmed"], Json::array());
  EXPECT_THAT(machine_.log, IsEmpty());
  EXPECT_THAT(stores_.opened, IsEmpty());
  EXPECT_THAT(control_.log, IsEmpty());
  EXPECT_EQ(sessions_, 0);
  EXPECT_THAT(support_.names(), ElementsAre("Torvane"));
}

TEST_F(ModelRunTest, AReplayKeepsRecordsWhereItIsToldTo) {
  seconds_ = 90;
  run({"--background", "--record", folder_ / "recording"});
  EXPECT_EQ(
      run({"--background", "--replay", folder_ / "recording", "--records", folder_ / "records"}),
      0);
  EXPECT_TRUE(hasRecords(folder_ / "records"));
  EXPECT_EQ(
      run({"--background", "--replay", folder_ / "recording", "--records", folder_ / "again"}), 0);
  for (const char* name : {"history.json", "today.json", "archive.json", "baseline.json"}) {
    EXPECT_EQ(folder_.read(std::string("records/") + name),
              folder_.read(std::string("again/") + name))
        << name;
  }
}

TEST_F(ModelRunTest, AReplayTakesTheSettingsOfATestRun) {
  seconds_ = 100;
  run({"--watch", "--record", folder_ / "recording"});
  run({"--watch", "--replay", folder_ / "recording", "--ui-testing", "--set",
       "runawayNotifications=1", "--set", "alertMinutes=1"});
  EXPECT_THAT(printed_, HasSubstr("{\"alerts\":[\"hot-"));
  EXPECT_THAT(stores_.opened, Not(Contains("app.embrix.uitesting")));
}

TEST_F(ModelRunTest, ARecordingThatCannotBeMadeIsOneSentenceBeforeAnything) {
  EXPECT_EQ(run({"--watch", "--record", folder_ / "missing/recording"}), 2);
  EXPECT_EQ(printed_, "");
  EXPECT_THAT(complaints_, StartsWith("embrix: "));
  EXPECT_EQ(sessions_, 0);
  EXPECT_THAT(support_.names(), IsEmpty());
}

TEST_F(ModelRunTest, AReportWinsOverAWindowlessRun) {
  EXPECT_EQ(run({"--watch", "--background", "--dump"}), 0);
  EXPECT_THAT(printed_, StartsWith("system "));
  EXPECT_EQ(sessions_, 0);
}

}  // namespace
}  // namespace embrix
