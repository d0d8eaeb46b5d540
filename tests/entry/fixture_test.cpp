#include "entry/fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "model/total_watts.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

class FixtureTest : public testing::Test {
 protected:
  FixtureTest() { Fixture::load(model, world.scheduler.wall); }

  ModelWorld world;
  PowerModel& model = world.model();
};

TEST_F(FixtureTest, IsAWarmMachineWithSomethingOfEverything) {
  EXPECT_TRUE(*model.isFixture());
  EXPECT_EQ(model.loadLevel(), LoadLevel::warm);
  EXPECT_FALSE(model.forgottenRows().empty());
  EXPECT_FALSE((*model.frame())->sleepBlockers.empty());
  EXPECT_EQ((*model.frame())->groups.size(), 7u);
  EXPECT_NE(Verdict::make((*model.frame())->groups, model.totalWatts()).kind, Verdict::Kind::calm);
  EXPECT_GT(model.cleanup().unusedBytes(), 0);
  EXPECT_TRUE((*model.discharge()).has_value());
  EXPECT_TRUE((*model.overnight()).has_value());
}

TEST_F(FixtureTest, TheThresholdsDoNotFollowTheBaseline) {
  EXPECT_EQ(model.thresholds(), (LoadThresholds{.warm = 24, .hot = 41}));
  EXPECT_FALSE(model.defaults().boolFor(SettingKeys::kAutomaticHeat));
}

TEST_F(FixtureTest, StoppingARowRemovesItAtOnceAndSignalsNobody) {
  world.bringToLife(**model.frame());
  const auto before = model.forgottenRows();
  for (const ForgottenRow& row : before) model.stop(row);
  EXPECT_TRUE(model.forgottenRows().empty());
  EXPECT_TRUE(world.control.log.empty());
}

TEST_F(FixtureTest, NothingIsEverSampled) {
  world.scheduler.advance(60);
  EXPECT_EQ(world.scheduler.workWaiting(), 0u);
}

TEST_F(FixtureTest, WhatWasLeftRunningIsAmongTheProcesses) {
  std::set<std::string> ids;
  for (const AppGroup& group : (*model.frame())->groups) {
    for (const ProcessRow& row : group.processes) ids.insert(row.id.string());
  }
  for (const ForgottenItem& item : (*model.frame())->forgotten) {
    EXPECT_TRUE(ids.contains(item.root.id.string())) << item.title;
  }
  for (const LocalServer& server : (*model.frame())->servers) {
    EXPECT_TRUE(ids.contains(server.process.id.string())) << server.title;
  }
}

TEST_F(FixtureTest, GroupsStandInTheOrderOfTheirWatts) {
  const auto& groups = (*model.frame())->groups;
  EXPECT_TRUE(std::is_sorted(groups.begin(), groups.end(),
                             [](const auto& a, const auto& b) { return a.watts > b.watts; }));
}

TEST_F(FixtureTest, ThePastReachesUpToThePresent) {
  const double now = world.scheduler.wall;
  ASSERT_FALSE(model.history()->points().empty());
  EXPECT_EQ(model.history()->points().back().time, now);
  EXPECT_GE(model.history()->window(1800, now).size(), 2u);
  const auto days = model.archive()->days();
  ASSERT_FALSE(days.empty());
  EXPECT_TRUE(std::is_sorted(days.begin(), days.end(),
                             [](const auto& a, const auto& b) { return a.day < b.day; }));
  EXPECT_LT(days.back().day, model.ledger()->day);
  EXPECT_FALSE(model.archive()->health().empty());
}

TEST_F(FixtureTest, ACacheIsClearedInMemoryAlone) {
  const auto before = model.cleanup().totalBytes();
  model.cleanup().clear(model.cleanup().unusedItems());
  world.scheduler.advance(5);
  world.scheduler.runBackground();
  EXPECT_LT(model.cleanup().totalBytes(), before);
  EXPECT_EQ(model.cleanup().unusedBytes(), 0);
}

TEST_F(FixtureTest, TheSameMomentGivesTheSameDay) {
  const double now = world.scheduler.wall;
  EXPECT_EQ(Fixture::frame(now, kMe), Fixture::frame(now, kMe));
  EXPECT_EQ(Fixture::history(now), Fixture::history(now));
  EXPECT_EQ(Fixture::cleanup(now), Fixture::cleanup(now));
}

}  // namespace
}  // namespace embrix
