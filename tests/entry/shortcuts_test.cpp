#include "entry/shortcuts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <variant>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ShortcutsTest : public testing::Test {
 protected:
  ShortcutsTest() { service.publish(Shortcuts::actions()); }

  void show(std::vector<AppGroup> groups, std::optional<double> systemWatts = std::nullopt) {
    Frame frame = frameAt(kMorning, std::move(groups));
    frame.battery = onBattery(80);
    frame.battery->systemWatts = systemWatts;
    world.bringToLife(frame);
    world.start();
    world.take(frame);
  }

  ActionOutcome perform(const char* name) {
    service.perform(name);
    return service.outcome.value_or(ActionError{"no reply"});
  }

  static ActionOutcome dialog(const char* text) {
    return ActionResult{.value = {}, .dialog = text};
  }

  ModelWorld world;
  ScriptedActionService service;
};

TEST_F(ShortcutsTest, FiveActionsAreOffered) {
  std::vector<std::string> offered;
  for (const PublishedAction& action : service.actions) {
    offered.push_back(action.name + ": " + action.title);
  }
  EXPECT_THAT(offered, ElementsAre("GetHottestAppIntent: Get Hottest App",
                                   "GetSystemPowerIntent: Get Mac Power Draw",
                                   "CalmHottestAppIntent: Calm Hottest App",
                                   "StopHottestAppIntent: Stop Hottest App",
                                   "OpenConsoleIntent: Open Embrix"));
}

TEST_F(ShortcutsTest, FourAreSuggestedAndTheStopIsNot) {
  EXPECT_THAT(
      EmbrixShortcuts::suggestions(),
      ElementsAre(
          EmbrixShortcuts::Suggestion{"GetHottestAppIntent", "What is heating my Mac in",
                                      "Hottest App", "flame"},
          EmbrixShortcuts::Suggestion{"CalmHottestAppIntent", "Calm the hottest app with",
                                      "Calm Hottest App", "snowflake"},
          EmbrixShortcuts::Suggestion{"GetSystemPowerIntent", "Get power draw from", "Power Draw",
                                      "bolt"},
          EmbrixShortcuts::Suggestion{"OpenConsoleIntent", "Open", "Open Embrix", "flame"}));
}

struct PowerCase {
  std::string label;
  double apps = 0;
  std::optional<double> systemWatts;
  double value = 0;
  std::string dialog;
};

class SystemPowerRule : public testing::TestWithParam<PowerCase> {};

TEST_P(SystemPowerRule, IsTheTotalToATenth) {
  ModelWorld world;
  world.start();
  Frame frame = frameAt(kMorning, {app("Safari", GetParam().apps)});
  frame.battery = onBattery(80);
  frame.battery->systemWatts = GetParam().systemWatts;
  world.take(frame);
  std::optional<ActionOutcome> outcome;
  Shortcuts::getSystemPower([&](ActionOutcome told) { outcome = std::move(told); });
  EXPECT_EQ(outcome, ActionOutcome(ActionResult{GetParam().value, GetParam().dialog}));
}

INSTANTIATE_TEST_SUITE_P(
    ShortcutsTest, SystemPowerRule,
    testing::Values(PowerCase{"NextToNothing", 0.04, {}, 0.0, "Your Mac is drawing 0 W."},
                    PowerCase{"ATwentieth", 0.05, {}, 0.1, "Your Mac is drawing 0.1 W."},
                    PowerCase{"TheAppsAreMore", 14.2, 12.5, 14.2, "Your Mac is drawing 14.2 W."},
                    PowerCase{"TheSystemIsMore", 14.2, 20.46, 20.5, "Your Mac is drawing 20.5 W."}),
    [](const auto& test) { return test.param.label; });

TEST_F(ShortcutsTest, TheHottestAppIsToldWithItsWatts) {
  show({app("Mail", 2, 5), group("c", "Code", {row(1, "node", 6), row(2, "node", 1)})});
  EXPECT_EQ(perform("GetHottestAppIntent"),
            ActionOutcome(ActionResult{.value = std::string("node ×2 in Code · 7.0 W"),
                                       .dialog = "node ×2 in Code · 7.0 W"}));
}

TEST_F(ShortcutsTest, CalmingCalmsTheUsersTargetsAlone) {
  show({group("c", "Code", {row(1, "node", 6), row(2, "node", 1, kRoot), row(3, "tsc", 1)})});
  EXPECT_EQ(perform("CalmHottestAppIntent"), dialog("Calmed node ×2 in Code."));
  EXPECT_THAT(*world.model().calmed(), ElementsAre(1));
}

TEST_F(ShortcutsTest, StoppingAsksTheUsersTargetsToEnd) {
  show({group("c", "Code", {row(1, "node", 6), row(2, "node", 1), row(3, "tsc", 1)})});
  EXPECT_EQ(perform("StopHottestAppIntent"), dialog("Stopped node ×2 in Code."));
  EXPECT_THAT(world.control.log, ElementsAre("terminate 1-1749000000", "terminate 2-1749000000"));
}

TEST_F(ShortcutsTest, WhatBelongsToTheSystemIsLeftAlone) {
  show({group("system", "System", {row(1, "kernel_task", 6, kRoot), row(2, "agent", 1)})});
  EXPECT_EQ(perform("CalmHottestAppIntent"),
            dialog("System belongs to the system and can't be calmed."));
  EXPECT_EQ(perform("StopHottestAppIntent"),
            dialog("System belongs to the system and can't be stopped."));
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(ShortcutsTest, AFrameWithoutGroupsIsNoFailure) {
  show({});
  EXPECT_EQ(perform("GetHottestAppIntent"),
            ActionOutcome(ActionResult{.value = std::string(), .dialog = "Nothing is running."}));
  EXPECT_EQ(perform("CalmHottestAppIntent"), dialog("Nothing to calm."));
  EXPECT_EQ(perform("StopHottestAppIntent"), dialog("Nothing to stop."));
  EXPECT_EQ(perform("GetSystemPowerIntent"),
            ActionOutcome(ActionResult{.value = 0.0, .dialog = "Your Mac is drawing 0 W."}));
}

TEST_F(ShortcutsTest, WithoutAModelNoActionIsReady) {
  for (const char* name : {"GetHottestAppIntent", "GetSystemPowerIntent", "CalmHottestAppIntent",
                           "StopHottestAppIntent"}) {
    EXPECT_EQ(perform(name),
              ActionOutcome(ActionError{"Embrix is still measuring. Try again in a moment."}));
  }
}

TEST_F(ShortcutsTest, AnActionWaitsForTheFirstFrame) {
  world.start();
  service.perform("GetHottestAppIntent");
  world.scheduler.advance(5);
  EXPECT_FALSE(service.outcome.has_value());
  world.take(frameAt(kMorning + 5, {app("Safari", 3)}));
  world.scheduler.advance(0.2);
  EXPECT_EQ(service.outcome, ActionOutcome(ActionResult{.value = std::string("Safari · 3.0 W"),
                                                        .dialog = "Safari · 3.0 W"}));
}

TEST_F(ShortcutsTest, WithoutAFrameInSixSecondsNoActionIsReady) {
  world.start();
  service.perform("CalmHottestAppIntent");
  world.scheduler.advance(5.9);
  EXPECT_FALSE(service.outcome.has_value());
  world.scheduler.advance(0.3);
  EXPECT_EQ(service.outcome, ActionOutcome(Shortcuts::notReady()));
}

TEST_F(ShortcutsTest, OpeningTheConsoleNeedsNoFrameAndNoModel) {
  EXPECT_EQ(perform("OpenConsoleIntent"), ActionOutcome(ActionResult{}));
  world.start();
  int opened = 0;
  world.model().setOpenDashboard([&](DashboardSection section) {
    EXPECT_EQ(section, DashboardSection::overview);
    ++opened;
  });
  EXPECT_EQ(perform("OpenConsoleIntent"), ActionOutcome(ActionResult{}));
  EXPECT_EQ(opened, 1);
}

}  // namespace
}  // namespace embrix
