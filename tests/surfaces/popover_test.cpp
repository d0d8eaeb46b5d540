#include "surfaces/popover.h"

#include <gtest/gtest.h>

#include "worlds/popover_world.h"

namespace embrix {
namespace {

// At 4 performance cores 10 W are warm and 18 W are hot.
class PopoverTest : public testing::Test {
 protected:
  PopoverTest() {
    world.defaults.set(SettingKeys::kAutomaticHeat, true);
    world.start();
  }

  Popover& popover() {
    if (!popover_) {
      popover_.emplace(
          world.model(),
          DesktopActions{.openDashboard =
                             [this](auto section) { note("open", dashboardSectionWord(section)); },
                         .dismiss =
                             [this] {
                               note("dismiss", "");
                               popover_.reset();
                             },
                         .openURL = [this](const auto& url) { note("url", url); },
                         .reveal = [this](const auto& folder) { note("reveal", folder); },
                         .copy = [this](const auto& text) { note("copy", text); },
                         .checkForUpdates = [this] { note("update", ""); },
                         .terminate = [this] { note("terminate", ""); }});
    }
    return *popover_;
  }
  void note(std::string_view word, std::string_view value) {
    log.push_back(std::string(word) + (value.empty() ? "" : " ") + std::string(value));
  }
  void take(Frame frame) {
    world.bringToLife(frame);
    world.take(std::move(frame));
  }
  Frame frame(std::vector<AppGroup> groups = {}) {
    return frameAt(world.scheduler.wall, std::move(groups));
  }
  // What was asked to end, oldest first.
  std::vector<std::string> ended() const {
    std::vector<std::string> calls;
    for (const std::string& call : world.control.log) {
      if (call.starts_with("terminate ")) calls.push_back(call.substr(10, call.find('-') - 10));
    }
    return calls;
  }
  const Confirmation::Request& question() { return **popover().confirmation().request(); }
  bool isAsked() { return popover().confirmation().request()->has_value(); }
  std::string firstRow() { return popover().leftRunning()->rows.at(0).id; }

  ModelWorld world;
  std::vector<std::string> log;
  std::optional<Popover> popover_;
};

TEST_F(PopoverTest, CountsAsASurfaceWhileItIsOpen) {
  popover();
  EXPECT_EQ(*world.model().visibleSurfaces(), 1);
  popover_.reset();
  EXPECT_EQ(*world.model().visibleSurfaces(), 0);
}

TEST_F(PopoverTest, AChangeIsToldOnceAndAnEqualValueNever) {
  take(frame({app("Xcode", 5)}));
  int hero = 0;
  int facts = 0;
  const auto first = popover().hero().subscribe([&](const auto&) { ++hero; });
  const auto second = popover().facts().subscribe([&](const auto&) { ++facts; });
  take(frame({app("Xcode", 5)}));
  EXPECT_EQ(hero, 0);
  take(frame({app("Xcode", 6)}));
  EXPECT_EQ(hero, 1);
  EXPECT_EQ(facts, 0);
}

TEST_F(PopoverTest, OpeningAPageDismissesItFirst) {
  popover().open(DashboardSection::battery);
  EXPECT_EQ(log, (std::vector<std::string>{"dismiss", "open battery"}));
  EXPECT_EQ(*world.model().dashboardSection(), DashboardSection::battery);
}

TEST_F(PopoverTest, TheButtonCalmsTheCulpritAndRestoresIt) {
  take(frame({app("Xcode", 8)}));
  popover().calmOrRestoreCulprit();
  EXPECT_EQ(*world.model().calmed(), (PowerModel::Pids{100}));
  EXPECT_EQ(popover().hero()->culprit->label, "Restore Xcode");
  popover().calmOrRestoreCulprit();
  EXPECT_TRUE(world.model().calmed()->empty());
  EXPECT_EQ(popover().hero()->culprit->label, "Calm Xcode");
}

TEST_F(PopoverTest, QuittingTheCulpritAsksFirst) {
  take(frame({app("Xcode", 8)}));
  popover().chooseForCulprit("quit");
  ASSERT_TRUE(isAsked());
  EXPECT_EQ(question().question, "Quit Xcode?");
  EXPECT_TRUE(ended().empty());
  popover().confirmation().answer(true);
  EXPECT_EQ(ended(), (std::vector<std::string>{"100"}));
}

TEST_F(PopoverTest, ARuleIsSwitchedOnChangedAndSwitchedOff) {
  take(frame({app("Xcode", 8)}));
  const auto chosen = [&](const char* action) -> std::optional<CalmRule::Condition> {
    popover().chooseForCulprit(action);
    const auto rule = world.model().calmRuleForApp("Xcode");
    return rule ? std::optional(rule->condition) : std::nullopt;
  };
  const auto& items = popover().hero()->culprit->menu.at(1).items;
  const std::string onBattery = items.at(0).action;
  const std::string always = items.at(2).action;
  EXPECT_EQ(chosen(onBattery.c_str()), CalmRule::Condition::onBattery);
  EXPECT_TRUE(popover().hero()->culprit->menu.at(1).items.at(0).isOn.value());
  EXPECT_EQ(chosen(always.c_str()), CalmRule::Condition::always);
  EXPECT_EQ(chosen(always.c_str()), std::nullopt);
  EXPECT_EQ(chosen("no such action"), std::nullopt);
}

TEST_F(PopoverTest, ARowIsStoppedOnlyAfterAYes) {
  take(frameWithForgotten(world.scheduler.wall, 2));
  std::string floated;
  popover().onFloatAway([&](const auto& row, const auto& text) { floated = row + " " + text; });
  const std::string id = firstRow();
  popover().askToStopRow(id);
  EXPECT_EQ(question().question, "Stop tool 0?");
  EXPECT_EQ(question().actionTitle, "Stop");
  EXPECT_EQ(question().message,
            "It's been running for 2 hours and frees 2.0 GB. Anything unsaved in it is lost.");
  EXPECT_TRUE(ended().empty());

  popover().confirmation().answer(true);
  EXPECT_EQ(ended(), (std::vector<std::string>{"100"}));
  EXPECT_EQ(floated, id + " +2.0 GB");
  EXPECT_TRUE(popover().leftRunning()->rows.at(0).isStopping);
  EXPECT_FALSE(popover().leftRunning()->rows.at(1).isStopping);
}

TEST_F(PopoverTest, ARowThatIsGoneIsNoLongerStopping) {
  const Frame before = frameWithForgotten(world.scheduler.wall, 1);
  take(before);
  popover().askToStopRow(firstRow());
  popover().confirmation().answer(true);
  take(frame());
  EXPECT_TRUE(popover().leftRunning()->rows.empty());
  take(before);
  EXPECT_FALSE(popover().leftRunning()->rows.at(0).isStopping);
}

TEST_F(PopoverTest, ASimulatorIsShutDownAllElseIsStopped) {
  Frame simulator = frameWithForgotten(world.scheduler.wall, 1);
  simulator.forgotten[0].simulatorUDID = "UDID";
  take(std::move(simulator));
  popover().askToStopRow(firstRow());
  EXPECT_EQ(question().question, "Shut down tool 0?");
  EXPECT_EQ(question().actionTitle, "Shut Down");
}

TEST_F(PopoverTest, StoppingAllAsksWithTheNumberOfAll) {
  take(frameWithForgotten(world.scheduler.wall, 4));
  popover().askToStopAll();
  EXPECT_EQ(question().question, "Stop all 4 things left running?");
  EXPECT_EQ(question().actionTitle, "Stop All");
  EXPECT_EQ(
      question().message,
      "This frees 10.0 GB of memory. Anything unsaved in them is lost. Pin anything you still "
      "need to keep it.");
  popover().confirmation().answer(true);
  EXPECT_EQ(ended().size(), 4u);
}

TEST_F(PopoverTest, WithNothingLeftRunningThereIsNothingToAsk) {
  take(frame());
  popover().askToStopAll();
  popover().askToStopRow("no such row");
  popover().askToStopBlocker("77");
  EXPECT_FALSE(isAsked());
}

TEST_F(PopoverTest, TheMenuOfARowCalmsKeepsAndShows) {
  Frame one = frameWithForgotten(world.scheduler.wall, 1);
  one.forgotten[0].root.directory = "/Users/me/code";
  take(one);
  const std::string id = firstRow();
  popover().chooseForRow(id, "reveal");
  EXPECT_EQ(log, (std::vector<std::string>{"reveal /Users/me/code"}));
  popover().chooseForRow(id, "calm");
  EXPECT_EQ(popover().leftRunning()->rows.at(0).menu.at(1).action, "restore");
  popover().chooseForRow(id, "restore");
  EXPECT_TRUE(world.model().calmed()->empty());
  popover().chooseForRow(id, "stop");
  EXPECT_TRUE(isAsked());
  popover().chooseForRow(id, "keep");
  EXPECT_TRUE(popover().leftRunning()->rows.empty());
}

TEST_F(PopoverTest, ABlockerIsStoppedOnlyAfterAYes) {
  Frame blocked = frame({app("caffeinate", 0.1, 77)});
  blocked.sleepBlockers = {{.pid = 77,
                            .processName = "caffeinate",
                            .preventsSystemSleep = true,
                            .preventsDisplaySleep = false,
                            .reasons = {},
                            .since = world.scheduler.wall - 3600}};
  take(std::move(blocked));
  ASSERT_EQ(popover().awake()->size(), 1u);
  popover().askToStopBlocker(popover().awake()->at(0).id);
  EXPECT_EQ(question().question, "Stop caffeinate (keep awake)?");
  EXPECT_EQ(question().message,
            "Your Mac can sleep again once it quits. Anything unsaved in it is lost.");
  popover().confirmation().answer(false);
  EXPECT_TRUE(ended().empty());
  popover().askToStopBlocker(popover().awake()->at(0).id);
  popover().confirmation().answer(true);
  EXPECT_EQ(ended(), (std::vector<std::string>{"77"}));
}

TEST_F(PopoverTest, AServerIsOpenedCopiedAndShown) {
  Frame served = frame();
  served.servers = {devServer("shop", 5, 3000)};
  served.servers[0].process.directory = "/Users/me/shop";
  take(std::move(served));
  const std::string id = (*popover().servers())->tiles.at(0).id;
  popover().openServer(id);
  popover().chooseForServer(id, "copy");
  popover().chooseForServer(id, "reveal");
  popover().openServer("gone");
  EXPECT_EQ(log, (std::vector<std::string>{"url http://localhost:3000",
                                           "copy http://localhost:3000", "reveal /Users/me/shop"}));
}

TEST_F(PopoverTest, TheSettingsMenuHoldsItsItemsInOrder) {
  EXPECT_EQ(labelsOf(Popover::settingsMenu()),
            (std::vector<std::string>{"Settings…", "Check for Updates…", "", "Quit Embrix"}));
  popover().chooseSetting("update");
  popover().chooseSetting("quit");
  popover().chooseSetting("settings");
  EXPECT_EQ(log, (std::vector<std::string>{"update", "terminate", "dismiss", "open settings"}));
}

TEST_F(PopoverTest, HasNoServersCardBeforeTheFirstFrame) {
  EXPECT_FALSE(popover().servers()->has_value());
  EXPECT_TRUE(popover().awake()->empty());
}

}  // namespace
}  // namespace embrix
