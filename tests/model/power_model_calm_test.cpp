#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "model/process_identity.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PowerModelCalmTest : public testing::Test {
 protected:
  PowerModelCalmTest() { world.start(); }

  void show(const std::vector<AppGroup>& groups) {
    const Frame frame = frameAt(date += 2, groups);
    world.bringToLife(frame);
    world.take(frame);
  }

  ModelWorld world;
  PowerModel& model = world.model();
  double date = kMorning;
};

TEST_F(PowerModelCalmTest, TheTargetsAreAllCopiesOfTheHeaviestProgram) {
  show({group(
      "a", "Code",
      {row(1, "node", 3), row(2, "Code Helper", 4), row(3, "node", 2), row(4, "node", 0, kRoot)})});
  std::vector<std::int32_t> pids;
  for (const ProcessRow& target : model.targetsInGroup("a")) pids.push_back(target.pid);
  EXPECT_THAT(pids, ElementsAre(1, 3, 4)) << "in the frame's order, of every user";
}

TEST_F(PowerModelCalmTest, WithoutAFrameAGroupOrAProcessThereAreNoTargets) {
  EXPECT_THAT(model.targetsInGroup("a"), IsEmpty());
  show({group("a", "A", {})});
  EXPECT_THAT(model.targetsInGroup("a"), IsEmpty());
  EXPECT_THAT(model.targetsInGroup("b"), IsEmpty());
}

TEST_F(PowerModelCalmTest, NobodyIsCalmedInAnEmptyList) {
  EXPECT_FALSE(model.isCalmed({}));
}

TEST_F(PowerModelCalmTest, RowsAreCalmedWhenAllOfThemAre) {
  show({app("Safari", 3, 1), app("Mail", 2, 2)});
  model.calm({row(1, "Safari", 3)});
  EXPECT_TRUE(model.isCalmed({row(1, "Safari", 3)}));
  EXPECT_FALSE(model.isCalmed({row(1, "Safari", 3), row(2, "Mail", 2)}));
}

TEST_F(PowerModelCalmTest, CalmingActsOnEachProcessByItsPIDAndStartTime) {
  show({app("Safari", 3, 1), app("Mail", 2, 2)});
  model.calm({row(1, "Safari", 3), row(2, "Mail", 2)});
  EXPECT_THAT(world.control.log, ElementsAre("calm 1-1749000000", "calm 2-1749000000"));
  EXPECT_THAT(*model.calmed(), ElementsAre(1, 2));
  EXPECT_THAT(*model.autoCalmed(), IsEmpty());
}

TEST_F(PowerModelCalmTest, CalmingAgainAsksAgain) {
  show({app("Safari", 3, 1)});
  model.calm({row(1, "Safari", 3)});
  model.calm({row(1, "Safari", 3)});
  EXPECT_THAT(world.control.log, ElementsAre("calm 1-1749000000", "calm 1-1749000000"));
}

TEST_F(PowerModelCalmTest, ProcessesOfOthersAreLeftAlone) {
  show({group("a", "A", {row(1, "daemon", 3, kRoot)})});
  model.calm({row(1, "daemon", 3, kRoot)});
  model.quit(row(1, "daemon", 3, kRoot));
  model.stop(1);
  EXPECT_THAT(world.control.log, IsEmpty());
  EXPECT_THAT(*model.calmed(), IsEmpty());
}

TEST_F(PowerModelCalmTest, AFailureIsLoggedInNumbersAndChangesNothing) {
  show({app("Safari", 3, 1), app("Mail", 2, 2)});
  world.control.failing[1] = EPERM;
  model.calm({row(1, "Safari", 3), row(2, "Mail", 2)});
  EXPECT_THAT(*model.calmed(), ElementsAre(2));
  EXPECT_THAT(world.log.lines, ElementsAre("PowerModel: Calm 1 failed: 1"));
}

TEST_F(PowerModelCalmTest, ARowWithoutAStartTimeIsNotActedOn) {
  show({app("Safari", 3, 1)});
  ProcessRow nameless = row(1, "Safari", 3);
  nameless.id = "Safari";
  model.calm({nameless});
  model.quit(nameless);
  EXPECT_THAT(world.control.log, IsEmpty());
  EXPECT_THAT(world.log.lines,
              ElementsAre("PowerModel: Calm 1 failed: 3", "PowerModel: SIGTERM to 1 failed: 3"));
}

TEST_F(PowerModelCalmTest, RestoringByHandWhatWasCalmedByHandLeavesRulesFree) {
  show({app("Safari", 3, 1)});
  model.calm({row(1, "Safari", 3)});
  model.restore({row(1, "Safari", 3)});
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(world.control.background, IsEmpty());
  model.addCalmRule("Safari", CalmRule::Condition::always);
  EXPECT_THAT(*model.autoCalmed(), ElementsAre(1)) << "no override was stored";
}

TEST_F(PowerModelCalmTest, RestoringWhatARuleCalmedKeepsTheRuleAway) {
  model.addCalmRule("Safari", CalmRule::Condition::always);
  show({app("Safari", 3, 1)});
  ASSERT_THAT(*model.autoCalmed(), ElementsAre(1));
  model.restore({row(1, "Safari", 3)});
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(*model.autoCalmed(), IsEmpty());
  show({app("Safari", 3, 1)});
  EXPECT_THAT(*model.calmed(), IsEmpty());
}

TEST_F(PowerModelCalmTest, WhatIsNotCalmedGetsNoCall) {
  show({app("Safari", 3, 1)});
  model.restore({row(1, "Safari", 3)});
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelCalmTest, AFailureToRestoreIsSilent) {
  show({app("Safari", 3, 1)});
  model.calm({row(1, "Safari", 3)});
  world.control.failing[1] = ESRCH;
  model.restore({row(1, "Safari", 3)});
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(world.log.lines, IsEmpty());
}

TEST_F(PowerModelCalmTest, RestoringAllEmptiesBothSets) {
  model.addCalmRule("Mail", CalmRule::Condition::always);
  show({app("Safari", 3, 1), app("Mail", 2, 2)});
  model.calm({row(1, "Safari", 3)});
  model.restoreAllCalmed();
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(*model.autoCalmed(), IsEmpty());
  EXPECT_THAT(world.control.background, IsEmpty());
}

TEST_F(PowerModelCalmTest, QuittingAsksOnceAndWaitsForNothing) {
  show({app("Safari", 3, 1)});
  world.control.stubborn.insert(1);
  model.quit(row(1, "Safari", 3));
  show({app("Safari", 3, 1)});
  EXPECT_THAT(world.control.log, ElementsAre("terminate 1-1749000000"));
}

TEST_F(PowerModelCalmTest, AFailureToQuitIsLogged) {
  show({app("Safari", 3, 1)});
  world.control.failing[1] = EPERM;
  model.quit(row(1, "Safari", 3));
  EXPECT_THAT(world.log.lines, ElementsAre("PowerModel: SIGTERM to 1 failed: 1"));
}

TEST_F(PowerModelCalmTest, StoppingByPIDTrustsTheFrameAlone) {
  model.stop(1);
  show({app("Safari", 3, 1)});
  model.stop(2);
  EXPECT_THAT(world.control.log, IsEmpty());
  model.stop(1);
  EXPECT_THAT(world.control.log, ElementsAre("terminate 1-1749000000"));
}

TEST_F(PowerModelCalmTest, APIDThatStandsTwiceIsStoppedOnce) {
  world.control.stubborn.insert(1);
  show({app("Safari", 3, 1), app("Mail", 2, 1)});
  model.stop(1);
  EXPECT_THAT(world.control.log, ElementsAre("terminate 1-1749000000"));
}

TEST_F(PowerModelCalmTest, AProcessThatEndedIsForgotten) {
  show({app("Safari", 3, 1), app("Mail", 2, 2)});
  model.calm({row(1, "Safari", 3), row(2, "Mail", 2)});
  show({app("Mail", 2, 2)});
  EXPECT_THAT(*model.calmed(), ElementsAre(2));
}

TEST_F(PowerModelCalmTest, ALaterProcessOfThePIDIsNeitherCalmedNorRestored) {
  show({app("Safari", 3, 1)});
  model.calm({row(1, "Safari", 3)});
  world.control.end({.pid = 1, .startTime = kStarted});
  const ProcessRow later = row(1, "Mail", 3, kMe, kStarted + 50);
  world.control.living.insert({.pid = 1, .startTime = kStarted + 50});
  world.control.log.clear();
  model.restoreAllCalmed();
  EXPECT_THAT(world.control.log, ElementsAre("restore 1-1749000000")) << "which is gone";

  model.calm({row(1, "Safari", 3)});
  EXPECT_THAT(*model.calmed(), IsEmpty()) << "a row of a process that ended";
  model.quit(row(1, "Safari", 3));
  EXPECT_TRUE(world.control.living.contains({.pid = 1, .startTime = kStarted + 50}));
  world.take(frameAt(date += 2, {group("m", "Mail", {later})}));
  EXPECT_FALSE(model.isCalmed({later}));
}

TEST_F(PowerModelCalmTest, APIDThatIsGivenAwayBetweenTwoFramesLosesItsPlace) {
  show({app("Safari", 3, 1)});
  model.calm({row(1, "Safari", 3)});
  world.take(frameAt(date += 2, {group("m", "Mail", {row(1, "Mail", 3, kMe, kStarted + 50)})}));
  EXPECT_THAT(*model.calmed(), IsEmpty());
}

struct IdentityCase {
  std::string label;
  std::string id;
  std::optional<std::int64_t> startTime;
};

class IdentityRule : public testing::TestWithParam<IdentityCase> {};

TEST_P(IdentityRule, ReadsTheStartTimeBehindTheHyphen) {
  ProcessRow made = row(12, "x", 0);
  made.id = GetParam().id;
  const auto identity = identityOf(made);
  ASSERT_EQ(identity.has_value(), GetParam().startTime.has_value());
  if (identity) {
    EXPECT_EQ(identity->pid, 12);
    EXPECT_EQ(identity->startTime, *GetParam().startTime);
  }
}

INSTANTIATE_TEST_SUITE_P(PowerModelCalmTest, IdentityRule,
                         testing::Values(IdentityCase{"Ordinary", "12-1749000000", 1749000000},
                                         IdentityCase{"NegativePID", "-12-5", 5},
                                         IdentityCase{"Empty", "", {}},
                                         IdentityCase{"NoHyphen", "12", {}},
                                         IdentityCase{"NoStart", "12-", {}},
                                         IdentityCase{"ARest", "12-5x", {}},
                                         IdentityCase{"TooLarge", "12-18446744073709551615", {}}),
                         [](const auto& test) { return test.param.label; });

}  // namespace
}  // namespace embrix
