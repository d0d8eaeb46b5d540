#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PowerModelAlertsTest : public testing::Test {
 protected:
  PowerModelAlertsTest() { world.start(); }

  // Frames every ten seconds, the newest of them `seconds` after the first.
  void run(double seconds, const std::vector<AppGroup>& groups) {
    for (const double end = date + seconds; date <= end; date += 10) world.take(frame(groups));
  }

  Frame frame(const std::vector<AppGroup>& groups) {
    Frame made = frameAt(date, groups);
    made.battery = battery;
    made.thermalState = thermalState;
    return made;
  }

  void heat(ThermalState state, const std::vector<AppGroup>& groups) {
    thermalState = state;
    world.take(frame(groups));
    date += 10;
  }

  ModelWorld world{Records::dropped};
  PowerModel& model = world.model();
  double date = kMorning;
  std::optional<BatteryReading> battery;
  ThermalState thermalState = ThermalState::nominal;
};

TEST_F(PowerModelAlertsTest, ARunawayIsToldWithItsFiguresAndButtons) {
  world.alertAt(3, 5);
  run(300, {group("com.editor", "Code",
                  {row(1, "node", 4), row(2, "node", 2), row(3, "Code Helper", 1)})});
  ASSERT_THAT(world.notifier.posted, SizeIs(1));
  EXPECT_EQ(world.notifier.posted[0], (Notification{.identifier = "hot-com.editor",
                                                    .title = "node ×2 in Code is heating your Mac",
                                                    .body = "Averaging 7.0 W for over 5 min.",
                                                    .group = "com.editor",
                                                    .category = "hot-app"}));
}

TEST_F(PowerModelAlertsTest, WhatItCostsInBatteryIsTold) {
  world.alertAt(3, 5);
  battery = onBattery(80);
  battery->minutesRemaining = 100;
  run(300, {app("Safari", 5, 1), app("Mail", 15, 2)});
  ASSERT_THAT(world.notifier.posted, SizeIs(2));
  // 20 W now; without Safari's 5 the 2000 watt-minutes last 133 minutes: 33 more.
  EXPECT_EQ(world.notifier.posted[1].identifier, "hot-Safari.app");
  EXPECT_EQ(world.notifier.posted[1].body,
            "Averaging 5.0 W for over 5 min. It's costing you 33m of battery.");
}

TEST_F(PowerModelAlertsTest, OnTheAdapterTheCostReadsTheSame) {
  world.alertAt(3, 5);
  battery = onAdapter(80);  // 70 Wh full
  run(300, {app("Safari", 35, 1), app("Mail", 35, 2)});
  ASSERT_THAT(world.notifier.posted, SizeIs(2));
  EXPECT_EQ(world.notifier.posted[0].body,
            "Averaging 35.0 W for over 5 min. It's costing you 1h 0m of battery.");
}

TEST_F(PowerModelAlertsTest, AGainOfLessThanAMinuteIsNotTold) {
  world.alertAt(3, 5);
  battery = onBattery(80);
  battery->minutesRemaining = 10;
  run(300, {app("Safari", 3, 1), app("Mail", 97, 2)});
  ASSERT_THAT(world.notifier.posted, SizeIs(2));
  EXPECT_EQ(world.notifier.posted[1].body, "Averaging 3.0 W for over 5 min.");
}

TEST_F(PowerModelAlertsTest, AGainOfJustAMinuteIsTold) {
  world.alertAt(3, 5);
  battery = onBattery(80);
  battery->minutesRemaining = 1;
  run(300, {app("Safari", 8, 1), app("Mail", 8, 2)});  // twice as long without one of them
  ASSERT_THAT(world.notifier.posted, SizeIs(2));
  EXPECT_EQ(world.notifier.posted[0].body,
            "Averaging 8.0 W for over 5 min. It's costing you 1m of battery.");
}

TEST_F(PowerModelAlertsTest, HalfMinutesCountForTheWindowAndNotForTheWords) {
  world.alertAt(3, 2.5);
  run(20, {app("Safari", 99)});  // before the two minutes of the average
  run(100, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.posted, IsEmpty());
  run(0, {app("Safari", 5)});
  run(10, {app("Safari", 5)});
  ASSERT_THAT(world.notifier.posted, SizeIs(1));
  EXPECT_EQ(world.notifier.posted[0].body, "Averaging 5.0 W for over 2 min.");
}

TEST_F(PowerModelAlertsTest, AGroupWhoseHeaviestProgramIsAnothersHasNoButtons) {
  world.alertAt(3, 5);
  run(300, {group("a", "A", {row(1, "daemon", 5, kRoot), row(2, "agent", 1)})});
  ASSERT_THAT(world.notifier.posted, SizeIs(1));
  EXPECT_EQ(world.notifier.posted[0].category, std::nullopt);
  EXPECT_EQ(world.notifier.posted[0].group, "a");
}

TEST_F(PowerModelAlertsTest, OneOwnProcessAmongTheTargetsIsEnoughForButtons) {
  world.alertAt(3, 5);
  run(300, {group("a", "A", {row(1, "worker", 5, kRoot), row(2, "worker", 1)})});
  EXPECT_EQ(world.notifier.posted.at(0).category, "hot-app");
}

TEST_F(PowerModelAlertsTest, ARunawayThatIsSilentNowIsToldAsInformation) {
  world.alertAt(3, 5);
  run(290, {app("Safari", 5)});
  run(0, {});
  ASSERT_THAT(world.notifier.posted, SizeIs(1)) << "it left the frame and not the window";
  EXPECT_EQ(world.notifier.posted[0].title, "Safari is heating your Mac");
  EXPECT_EQ(world.notifier.posted[0].category, std::nullopt);
}

TEST_F(PowerModelAlertsTest, WithTheSwitchOffNothingIsSpent) {
  world.alertAt(3, 5);
  world.defaults.set(SettingKeys::kRunawayNotifications, false);
  run(600, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.posted, IsEmpty());
  world.defaults.set(SettingKeys::kRunawayNotifications, true);
  run(0, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.posted, SizeIs(1)) << "the next frame alerts";
}

TEST_F(PowerModelAlertsTest, ARefusedNotificationHasSpentItsTurn) {
  world.alertAt(3, 5);
  world.notifier.refuses = true;
  run(300, {app("Safari", 5)});
  world.notifier.refuses = false;
  run(1700, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.showing, IsEmpty());
  run(100, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.showing, SizeIs(1));
}

TEST_F(PowerModelAlertsTest, ThrottlingIsToldWithTheBiggestLoad) {
  world.alertAt(3, 5);
  heat(ThermalState::fair, {app("Safari", 5), app("Mail", 12.34)});
  heat(ThermalState::serious, {app("Safari", 5), app("Mail", 12.34)});
  ASSERT_THAT(world.notifier.posted, SizeIs(1));
  EXPECT_EQ(world.notifier.posted[0],
            (Notification{.identifier = "throttle",
                          .title = "Your Mac is throttling",
                          .body = "macOS is slowing the CPU to cool down. Biggest load: Mail at "
                                  "12.3 W.",
                          .group = "Mail.app",
                          .category = "hot-app"}));
}

TEST_F(PowerModelAlertsTest, ThrottlingWithoutGroupsKeepsItsBlank) {
  world.alertAt(3, 5);
  heat(ThermalState::fair, {});
  heat(ThermalState::serious, {});
  ASSERT_THAT(world.notifier.posted, SizeIs(1));
  EXPECT_EQ(world.notifier.posted[0].body, "macOS is slowing the CPU to cool down. ");
  EXPECT_EQ(world.notifier.posted[0].group, std::nullopt);
  EXPECT_EQ(world.notifier.posted[0].category, std::nullopt);
}

TEST_F(PowerModelAlertsTest, ALoadOfNextToNothingReadsAsZero) {
  world.alertAt(3, 5);
  heat(ThermalState::fair, {});
  heat(ThermalState::serious, {group("system", "System", {row(1, "kernel", 0.04, kRoot)})});
  ASSERT_THAT(world.notifier.posted, SizeIs(1));
  EXPECT_EQ(world.notifier.posted[0].body,
            "macOS is slowing the CPU to cool down. Biggest load: kernel in system at 0 W.");
  EXPECT_EQ(world.notifier.posted[0].category, std::nullopt);
}

TEST_F(PowerModelAlertsTest, OnlyTheEdgeIsTold) {
  world.alertAt(3, 5);
  heat(ThermalState::fair, {});
  heat(ThermalState::serious, {});
  heat(ThermalState::critical, {});
  heat(ThermalState::fair, {});
  heat(ThermalState::serious, {});
  EXPECT_THAT(world.notifier.posted, SizeIs(1));
}

TEST_F(PowerModelAlertsTest, AppsComeBeforeThrottlingAndInTheOrderOfTheirKeys) {
  world.alertAt(3, 5);
  run(290, {app("Mail", 9, 1), app("Ada", 5, 2)});
  thermalState = ThermalState::serious;
  run(0, {app("Mail", 9, 1), app("Ada", 5, 2)});
  std::vector<std::string> identifiers;
  for (const Notification& each : world.notifier.posted) identifiers.push_back(each.identifier);
  EXPECT_THAT(identifiers, ElementsAre("hot-Ada.app", "hot-Mail.app", "throttle"));
}

TEST_F(PowerModelAlertsTest, TheCalmButtonCalmsTheGroupAsItIsNow) {
  world.alertAt(3, 5);
  run(300, {group("a", "A", {row(1, "node", 5)})});
  const Frame later = frame({group("a", "A",
                                   {row(1, "node", 1), row(2, "esbuild", 9), row(3, "esbuild", 1),
                                    row(4, "esbuild", 1, kRoot)})});
  world.bringToLife(later);
  world.take(later);
  world.notifier.answer("hot-a", "calm");
  EXPECT_THAT(*model.calmed(), ElementsAre(2, 3));
}

TEST_F(PowerModelAlertsTest, TheStopButtonAsksTheTargetsToEnd) {
  world.alertAt(3, 5);
  const std::vector<AppGroup> groups = {group("a", "A", {row(1, "node", 5), row(2, "node", 5)})};
  world.bringToLife(frame(groups));
  run(300, groups);
  world.notifier.answer("hot-a", "stop");
  EXPECT_THAT(world.control.log, ElementsAre("terminate 1-1749000000", "terminate 2-1749000000"));
}

TEST_F(PowerModelAlertsTest, TheSnoozeButtonSilencesTheGroupForAnHour) {
  world.alertAt(3, 5);
  run(300, {app("Safari", 5)});
  world.notifier.answer("hot-Safari.app", "snooze");
  const double snoozed = world.scheduler.wall;
  run(3580, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.posted, SizeIs(1)) << "silent, though the cooldown is long over";
  date = snoozed + 3600;
  run(0, {app("Safari", 5)});
  EXPECT_THAT(world.notifier.posted, SizeIs(2));
}

TEST_F(PowerModelAlertsTest, AClickOnTheNotificationOpensTheDashboard) {
  std::vector<DashboardSection> opened;
  model.setOpenDashboard([&](DashboardSection section) { opened.push_back(section); });
  world.notifier.respond({.action = kDefaultAction, .group = {}});
  EXPECT_THAT(opened, ElementsAre(DashboardSection::overview));
}

TEST_F(PowerModelAlertsTest, ButtonsOfAGroupThatIsGoneDoNothing) {
  world.notifier.respond({.action = "calm", .group = "gone"});
  world.notifier.respond({.action = "stop", .group = {}});
  EXPECT_THAT(world.control.log, IsEmpty());
}

}  // namespace
}  // namespace embrix
