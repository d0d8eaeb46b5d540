#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PowerModelStartTest : public testing::Test {
 protected:
  HistoryPoint point(double time, double watts) {
    HistoryPoint made;
    made.time = time;
    made.systemWatts = watts;
    return made;
  }

  void saveHistory(const std::vector<HistoryPoint>& points) {
    world.store.save(HistorySnapshot(points));
  }

  ModelWorld world;
};

TEST_F(PowerModelStartTest, NothingIsThereBeforeTheStart) {
  const PowerModel& model = world.model();
  EXPECT_EQ(*model.frame(), std::nullopt);
  EXPECT_THAT(model.history()->points(), IsEmpty());
  EXPECT_EQ(model.history()->capacity(), 1800U);
  EXPECT_EQ(model.ledger()->day, "2025-06-15");
  EXPECT_EQ(*model.discharge(), std::nullopt);
  EXPECT_EQ(*model.dashboardSection(), DashboardSection::overview);
  EXPECT_FALSE(*model.isFixture());
  EXPECT_EQ(PowerModel::shared(), nullptr);
  EXPECT_EQ(world.scheduler.workWaiting(), 0U) << "and nothing is sampled";
}

TEST_F(PowerModelStartTest, TheStartedModelIsTheSharedOneForItsLife) {
  PowerModel& model = world.start();
  EXPECT_EQ(PowerModel::shared(), &model);
  world.renew();
  EXPECT_EQ(PowerModel::shared(), nullptr);
}

TEST_F(PowerModelStartTest, TheHistoryOfTheLastHalfHourIsTakenUp) {
  saveHistory({point(kMorning - 1801, 1), point(kMorning - 1800, 2), point(kMorning - 1799, 3),
               point(kMorning - 5, 4)});
  const auto points = world.start().history()->points();
  ASSERT_THAT(points, SizeIs(2)) << "one exactly half an hour old is out";
  EXPECT_EQ(points[0].systemWatts, 3);
  EXPECT_EQ(points[1].systemWatts, 4);
}

TEST_F(PowerModelStartTest, TodaysLedgerGoesOn) {
  DayLedger ledger = DayLedger::fresh("2025-06-15");
  ledger.totalWattHours = 12;
  world.store.saveLedger(ledger);
  EXPECT_EQ(world.start().ledger()->totalWattHours, 12);
}

TEST_F(PowerModelStartTest, YesterdaysLedgerIsDropped) {
  DayLedger ledger = DayLedger::fresh("2025-06-14");
  ledger.totalWattHours = 12;
  world.store.saveLedger(ledger);
  EXPECT_EQ(*world.start().ledger(), DayLedger::fresh("2025-06-15"));
}

TEST_F(PowerModelStartTest, ArchiveSessionAndBaselineAreTakenUp) {
  world.store.saveArchive(Archive({{.day = "2025-06-14"}, {.day = "2025-06-12"}}));
  world.store.saveDischarge(DischargeSession::begun(kMorning - 100, 80));
  world.store.saveBaseline(PowerBaseline({7, 8, 9}, kMorning - 10));
  const PowerModel& model = world.start();
  ASSERT_THAT(model.archive()->days(), SizeIs(2));
  EXPECT_EQ(model.archive()->days()[0].day, "2025-06-12") << "ascending, whatever the file's order";
  EXPECT_EQ((*model.discharge())->startPercent, 80);
  EXPECT_THAT(model.baseline()->samples(), ElementsAre(7, 8, 9));
}

TEST_F(PowerModelStartTest, WithoutABaselineTheHistoryGivesWhatItCan) {
  std::vector<HistoryPoint> points;
  for (int i = 0; i < 20; ++i) points.push_back(point(kMorning - 200 + 10 * i, 5 + i));
  saveHistory(points);
  // Every third point: 30 seconds apart.
  EXPECT_THAT(world.start().baseline()->samples(), ElementsAre(5, 8, 11, 14, 17, 20, 23));
}

TEST_F(PowerModelStartTest, ABaselineThatIsThereIsNotSeeded) {
  saveHistory({point(kMorning - 100, 5)});
  world.store.saveBaseline(PowerBaseline({7}, kMorning - 90));
  EXPECT_THAT(world.start().baseline()->samples(), ElementsAre(7));
}

TEST_F(PowerModelStartTest, FilesThatCannotBeReadLeaveTheFieldsAtTheirStart) {
  world.store.saveLedger(DayLedger::fresh("2025-06-15"));  // makes the folder
  for (const char* name :
       {"history.json", "today.json", "archive.json", "discharge.json", "baseline.json"}) {
    world.folder.write(std::string("Embrix/") + name, "{\"day\":");
  }
  const PowerModel& model = world.start();
  EXPECT_THAT(model.history()->points(), IsEmpty());
  EXPECT_EQ(*model.ledger(), DayLedger::fresh("2025-06-15"));
  EXPECT_THAT(model.archive()->days(), IsEmpty());
  EXPECT_EQ(*model.discharge(), std::nullopt);
  EXPECT_THAT(model.baseline()->samples(), IsEmpty());
  world.take(frameAt(kMorning, {app("Safari", 3)}));
  EXPECT_THAT(model.history()->points(), SizeIs(1)) << "and the run goes on";
}

TEST_F(PowerModelStartTest, StoredRulesAndKeptItemsAreReadAtOnce) {
  world.defaults.set(SettingKeys::kCalmRules,
                     SettingData{CalmRule::encode({{.id = CalmRule::freshID(), .name = "Slack"}})});
  world.defaults.set(SettingKeys::kKeptForgotten, std::vector<std::string>{"npm run dev|shop"});
  const PowerModel& model = world.renew();
  ASSERT_THAT(*model.calmRules(), SizeIs(1));
  EXPECT_THAT(*model.kept(), ElementsAre("npm run dev|shop"));
}

TEST_F(PowerModelStartTest, SettingsThatDoNotDecodeGiveNothing) {
  world.defaults.set(SettingKeys::kCalmRules, SettingData{"[{\"id\":1}]"});
  world.defaults.set(SettingKeys::kKeptForgotten, 5.0);
  const PowerModel& model = world.renew();
  EXPECT_THAT(*model.calmRules(), IsEmpty());
  EXPECT_THAT(*model.kept(), IsEmpty());
}

TEST_F(PowerModelStartTest, TheEndOfTheProgramGivesEveryCalmedProcessItsSpeedBack) {
  PowerModel& model = world.start();
  const Frame frame = frameAt(kMorning, {app("Safari", 3)});
  world.bringToLife(frame);
  world.take(frame);
  model.calm(frame.groups[0].processes);
  EXPECT_THAT(world.control.background, SizeIs(1));
  world.events.terminate();
  EXPECT_THAT(world.control.background, IsEmpty());
  EXPECT_THAT(*model.calmed(), IsEmpty());
}

TEST_F(PowerModelStartTest, WhatComesAfterTheModelsEndDoesNothing) {
  world.start();
  world.renew();
  world.events.sleep();
  world.events.wake();
  world.events.terminate();
  world.events.askForConsole();
  world.notifier.respond({.action = "snooze", .group = "x"});
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelStartTest, TheConsoleIsOpenedOnItsFirstPageOnceThereIsSomethingToOpenIt) {
  PowerModel& model = world.start();
  model.openConsole();
  std::vector<DashboardSection> opened;
  model.setOpenDashboard([&](DashboardSection section) { opened.push_back(section); });
  model.openConsole();
  EXPECT_THAT(opened, ElementsAre(DashboardSection::overview));
  world.events.askForConsole();
  EXPECT_THAT(opened, ElementsAre(DashboardSection::overview, DashboardSection::overview))
      << "whoever asked";
}

}  // namespace
}  // namespace embrix
