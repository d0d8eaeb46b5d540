#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Condition = CalmRule::Condition;

class PowerModelAutoCalmTest : public testing::Test {
 protected:
  PowerModelAutoCalmTest() {
    model.addCalmRule("Slack", Condition::always);
    world.start();
  }

  void show(const std::vector<AppGroup>& groups) {
    Frame frame = frameAt(date += 2, groups);
    frame.battery = battery;
    frame.thermalState = thermalState;
    world.bringToLife(frame);
    world.take(frame);
  }

  // One Slack beside so many watts of something else.
  void showAt(double watts) { show({app("Slack", 0.1, 1), app("Else", watts - 0.1, 2)}); }

  void useRule(Condition condition) { model.addCalmRule("slack", condition); }

  ModelWorld world;
  PowerModel& model = world.model();
  double date = kMorning;
  std::optional<BatteryReading> battery;
  ThermalState thermalState = ThermalState::nominal;
};

TEST_F(PowerModelAutoCalmTest, EveryOwnProcessOfTheAppAndOfTheNameElsewhereIsCalmed) {
  show({group("s", "SLACK",
              {row(1, "Slack", 1), row(2, "Slack Helper", 1), row(3, "Slack", 1, kRoot)}),
        group("c", "Code", {row(4, "slack", 1), row(5, "node", 1)})});
  EXPECT_THAT(*model.calmed(), ElementsAre(1, 2, 4));
  EXPECT_THAT(*model.autoCalmed(), ElementsAre(1, 2, 4));
}

TEST_F(PowerModelAutoCalmTest, AnothersProcessIsNeverAimedAt) {
  show({group("s", "Slack", {row(3, "Slack", 1, kRoot)})});
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelAutoCalmTest, WhatIsCalmedIsNotAskedAgain) {
  showAt(5);
  showAt(5);
  EXPECT_THAT(world.control.log, ElementsAre("calm 1-1749000000"));
}

TEST_F(PowerModelAutoCalmTest, AFailureIsTriedAgainInSilence) {
  world.control.calmFailing[1] = EPERM;
  showAt(5);
  showAt(5);
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(world.log.lines, IsEmpty());
  world.control.calmFailing.clear();
  showAt(5);
  EXPECT_THAT(*model.autoCalmed(), ElementsAre(1));
  EXPECT_THAT(world.control.log, SizeIs(3));
}

TEST_F(PowerModelAutoCalmTest, AWhenHotRuleFollowsTheHeatWithoutFlapping) {
  useRule(Condition::whenHot);
  showAt(12);
  EXPECT_THAT(*model.calmed(), IsEmpty()) << "warm, and not hot before";
  showAt(18);
  EXPECT_THAT(*model.calmed(), ElementsAre(1)) << "hot";
  showAt(12);
  EXPECT_THAT(*model.calmed(), ElementsAre(1)) << "still warm";
  showAt(9);
  EXPECT_THAT(*model.calmed(), IsEmpty()) << "calm";
  EXPECT_THAT(world.control.background, IsEmpty());
  showAt(12);
  EXPECT_THAT(*model.calmed(), IsEmpty()) << "warm anew";
}

TEST_F(PowerModelAutoCalmTest, AThrottledMachineIsHotForTheRules) {
  useRule(Condition::whenHot);
  thermalState = ThermalState::serious;
  showAt(1);
  EXPECT_THAT(*model.calmed(), ElementsAre(1));
}

TEST_F(PowerModelAutoCalmTest, UnpluggingAndPluggingInActAtTheNextFrame) {
  useRule(Condition::onBattery);
  battery = onAdapter(80);
  showAt(5);
  EXPECT_THAT(*model.calmed(), IsEmpty());
  battery = onBattery(80);
  showAt(5);
  EXPECT_THAT(*model.calmed(), ElementsAre(1));
  battery->isCharging = true;
  showAt(5);
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(world.control.background, IsEmpty());
  battery.reset();
  showAt(5);
  EXPECT_THAT(*model.calmed(), IsEmpty()) << "without a battery there is no time on battery";
}

TEST_F(PowerModelAutoCalmTest, WhatTheUserRestoredRunsAtFullSpeedWhileANewProcessIsCalmed) {
  showAt(5);
  model.restore({row(1, "Slack", 0.1)});
  show({app("Slack", 0.1, 1), group("Slack.app", "Slack", {row(7, "Slack", 1)})});
  EXPECT_THAT(*model.calmed(), ElementsAre(7));
}

TEST_F(PowerModelAutoCalmTest, OneThatBecomesAnothersIsStillThereAndHasItsSpeedBack) {
  showAt(5);
  show({group("s", "Slack", {row(1, "Slack", 0.1, kRoot)})});
  EXPECT_THAT(world.control.log, ElementsAre("calm 1-1749000000", "restore 1-1749000000"));
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(*model.autoCalmed(), IsEmpty());
}

TEST_F(PowerModelAutoCalmTest, RestoringAllTakesNoOverrideAway) {
  showAt(5);
  model.restore({row(1, "Slack", 0.1)});
  model.restoreAllCalmed();
  showAt(5);
  EXPECT_THAT(*model.calmed(), IsEmpty());
}

TEST_F(PowerModelAutoCalmTest, AnOverrideEndsWithItsProcess) {
  showAt(5);
  model.restore({row(1, "Slack", 0.1)});
  show({app("Else", 5, 2)});
  showAt(5);
  EXPECT_THAT(*model.calmed(), ElementsAre(1));
}

TEST_F(PowerModelAutoCalmTest, AnOverrideIsNotForALaterProcessOfThePID) {
  showAt(5);
  model.restore({row(1, "Slack", 0.1)});
  world.control.living.insert({.pid = 1, .startTime = kStarted + 9});
  world.take(
      frameAt(date += 2, {group("Slack.app", "Slack", {row(1, "Slack", 1, kMe, kStarted + 9)})}));
  EXPECT_THAT(*model.autoCalmed(), ElementsAre(1));
}

TEST_F(PowerModelAutoCalmTest, ARuleThatTakesOverAReusedPIDCalmsTheNewProcess) {
  showAt(5);
  world.control.end({.pid = 1, .startTime = kStarted});
  world.control.living.insert({.pid = 1, .startTime = kStarted + 9});
  world.take(
      frameAt(date += 2, {group("Slack.app", "Slack", {row(1, "Slack", 1, kMe, kStarted + 9)})}));
  EXPECT_TRUE(world.control.background.contains({.pid = 1, .startTime = kStarted + 9}));
  EXPECT_THAT(*model.calmed(), ElementsAre(1));
}

TEST_F(PowerModelAutoCalmTest, AReusedPIDThatNoRuleWantsIsLeftAlone) {
  showAt(5);
  world.control.log.clear();
  world.take(frameAt(date += 2, {group("m", "Mail", {row(1, "Mail", 1, kMe, kStarted + 9)})}));
  EXPECT_THAT(world.control.log, IsEmpty());
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(*model.autoCalmed(), IsEmpty());
}

TEST_F(PowerModelAutoCalmTest, WhatTheUserCalmedNoRuleLetsGoOf) {
  model.removeCalmRule(model.calmRules()->front());
  showAt(5);
  model.calm({row(1, "Slack", 0.1)});
  model.addCalmRule("Slack", Condition::always);
  EXPECT_THAT(*model.autoCalmed(), IsEmpty());
  model.removeCalmRule(model.calmRules()->front());
  EXPECT_THAT(*model.calmed(), ElementsAre(1));
}

TEST_F(PowerModelAutoCalmTest, RemovingTheLastRuleRestoresAtOnce) {
  showAt(5);
  model.removeCalmRule(model.calmRules()->front());
  EXPECT_THAT(*model.calmRules(), IsEmpty());
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(world.control.background, IsEmpty());
}

TEST_F(PowerModelAutoCalmTest, ARuleIsStoredWithEachEdit) {
  const auto stored = [&] {
    return CalmRule::decode(world.defaults.dataFor(SettingKeys::kCalmRules).value_or(""));
  };
  EXPECT_EQ(stored(), *model.calmRules());
  model.addCalmRule("Mail", Condition::onBattery);
  EXPECT_EQ(stored(), *model.calmRules());
  ASSERT_THAT(stored(), SizeIs(2));
  model.removeCalmRule(stored()[0]);
  EXPECT_EQ(stored(), *model.calmRules());
  EXPECT_THAT(stored(), SizeIs(1));
}

TEST_F(PowerModelAutoCalmTest, ANameHasOneRuleWhoseNameStaysAsItWas) {
  const std::string id = model.calmRules()->front().id;
  model.addCalmRule("SLACK", Condition::whenHot);
  EXPECT_THAT(*model.calmRules(),
              ElementsAre(CalmRule{.id = id, .name = "Slack", .condition = Condition::whenHot}));
}

TEST_F(PowerModelAutoCalmTest, AnUpdateReplacesTheRuleOfThatID) {
  CalmRule changed = model.calmRules()->front();
  changed.name = "Mail";
  model.updateCalmRule(changed);
  EXPECT_THAT(*model.calmRules(), ElementsAre(changed));
  model.updateCalmRule({.id = CalmRule::freshID(), .name = "Notes"});
  EXPECT_THAT(*model.calmRules(), ElementsAre(changed)) << "no rule has that id";
}

TEST_F(PowerModelAutoCalmTest, ARuleIsFoundByItsAppInAnyCase) {
  EXPECT_EQ(model.calmRuleForApp("sLACK"), model.calmRules()->front());
  EXPECT_EQ(model.calmRuleForApp("Mail"), std::nullopt);
}

TEST_F(PowerModelAutoCalmTest, AnEditBeforeTheFirstFrameWaitsForIt) {
  EXPECT_THAT(world.control.log, IsEmpty());
  showAt(5);
  EXPECT_THAT(*model.autoCalmed(), ElementsAre(1));
}

TEST_F(PowerModelAutoCalmTest, RulesTouchNoProcessThatDemoDataMakesUp) {
  PowerModel::FixtureData data;
  data.frame = frameAt(kMorning, {app("Slack", 1, 1)});
  model.showFixture(std::move(data));
  model.addCalmRule("Slack", Condition::whenHot);
  model.addCalmRule("Slack", Condition::always);
  EXPECT_THAT(world.control.background, IsEmpty()) << "no such process runs";
  EXPECT_THAT(*model.calmed(), IsEmpty());
}

}  // namespace
}  // namespace embrix
