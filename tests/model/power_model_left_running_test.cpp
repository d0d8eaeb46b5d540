#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/left_running.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> titles(const std::vector<ForgottenRow>& rows) {
  std::vector<std::string> titles;
  for (const ForgottenRow& row : rows) titles.push_back(row.item.title);
  return titles;
}

TEST(LeftRunningTest, AnItemIsKnownByItsTitleAndProject) {
  ForgottenItem item = forgotten("npm run dev", {row(1, "node", 1)});
  EXPECT_EQ(LeftRunning::keptKey(item), "npm run dev|");
  item.project = "";
  EXPECT_EQ(LeftRunning::keptKey(item), "npm run dev|") << "as without a project";
  item.project = "shop";
  EXPECT_EQ(LeftRunning::keptKey(item), "npm run dev|shop");
  ForgottenItem elsewhere = forgotten("npm run dev", {row(2, "node", 1)});
  elsewhere.project = "shop";
  elsewhere.root.directory = "/Users/ada/old/shop";
  EXPECT_EQ(LeftRunning::keptKey(elsewhere), LeftRunning::keptKey(item)) << "in another folder";
}

class PowerModelLeftRunningTest : public testing::Test {
 protected:
  PowerModelLeftRunningTest() { world.start(); }

  void show(std::vector<ProcessRow> rows, const std::vector<ForgottenItem>& items) {
    Frame frame = frameAt(kMorning, {group("t", "Tools", std::move(rows))});
    frame.forgotten = items;
    frame.battery = battery;
    world.bringToLife(frame);
    world.take(frame);
  }

  ModelWorld world;
  PowerModel& model = world.model();
  std::optional<BatteryReading> battery;
  const ProcessRow server = row(1, "node", 2);
  const ProcessRow worker = row(2, "esbuild", 3);
  const ProcessRow daemon = row(3, "java", 4);
};

TEST_F(PowerModelLeftRunningTest, WithoutAFrameOrItemsThereAreNoRows) {
  EXPECT_THAT(model.forgottenRows(), IsEmpty());
  EXPECT_THAT(model.keptItems(), IsEmpty());
  show({server}, {});
  EXPECT_THAT(model.forgottenRows(), IsEmpty());
}

TEST_F(PowerModelLeftRunningTest, ARowHasThePresentProcessesAndWhatTheyCost) {
  battery = onBattery(80);
  battery->minutesRemaining = 100;
  const ProcessRow gone = row(9, "gone", 5);
  show({server, worker, daemon}, {forgotten("npm run dev", {server, gone, worker})});
  const auto rows = model.forgottenRows();
  ASSERT_THAT(rows, SizeIs(1));
  EXPECT_THAT(rows[0].processes, ElementsAre(server, worker)) << "in the order of the members";
  EXPECT_EQ(rows[0].watts, 5);
  EXPECT_EQ(rows[0].minutes, 125) << "900 watt-minutes at 4 W instead of 9";
  EXPECT_EQ(rows[0].id(), server.id);
}

TEST_F(PowerModelLeftRunningTest, AnItemWhoseRootHasGoneHasNoRow) {
  show({worker}, {forgotten("npm run dev", {server, worker})});
  EXPECT_THAT(model.forgottenRows(), IsEmpty());
}

TEST_F(PowerModelLeftRunningTest, ALaterProcessOfThePIDIsNotTheRow) {
  show({row(1, "node", 2, kMe, kStarted + 1)}, {forgotten("npm run dev", {server})});
  EXPECT_THAT(model.forgottenRows(), IsEmpty());
}

TEST_F(PowerModelLeftRunningTest, RowsComeByWattsAndThenByAge) {
  const ProcessRow equal = row(4, "ruby", 4);
  show({server, daemon, equal, worker},
       {forgotten("young", {daemon}, 4000), forgotten("little", {server}, 9000),
        forgotten("old", {equal}, 5000), forgotten("some", {worker}, 1)});
  EXPECT_THAT(titles(model.forgottenRows()), ElementsAre("old", "young", "some", "little"));
}

TEST_F(PowerModelLeftRunningTest, ARowOfZeroWattsWinsNothing) {
  battery = onBattery(80);
  const ProcessRow idle = row(5, "adb", 0);
  show({idle, server}, {forgotten("adb", {idle})});
  EXPECT_EQ(model.forgottenRows().at(0).minutes, std::nullopt);
}

TEST_F(PowerModelLeftRunningTest, WhatIsKeptIsNoRowUntilItIsLetGo) {
  const ForgottenItem item = forgotten("npm run dev", {server});
  show({server, daemon}, {item, forgotten("Gradle daemon", {daemon})});
  model.keep(item);
  EXPECT_THAT(titles(model.forgottenRows()), ElementsAre("Gradle daemon"));
  EXPECT_THAT(model.keptItems(), ElementsAre(item));
  EXPECT_THAT(world.defaults.stringsFor(SettingKeys::kKeptForgotten).value(),
              ElementsAre("npm run dev|"));
  EXPECT_THAT(*world.renew().kept(), ElementsAre("npm run dev|")) << "after a new start, too";
}

TEST_F(PowerModelLeftRunningTest, WhatIsLetGoIsARowAgain) {
  const ForgottenItem item = forgotten("npm run dev", {server});
  show({server}, {item});
  model.keep(item);
  model.unkeep(item);
  EXPECT_THAT(model.forgottenRows(), SizeIs(1));
  EXPECT_THAT(world.defaults.stringsFor(SettingKeys::kKeptForgotten).value(), IsEmpty());
}

TEST_F(PowerModelLeftRunningTest, AKeptItemThatEndedKeepsItsPlaceForWhenItReturns) {
  const ForgottenItem item = forgotten("npm run dev", {server});
  show({server}, {item});
  model.keep(item);
  show({daemon}, {});
  EXPECT_THAT(model.keptItems(), IsEmpty());
  const ForgottenItem again = forgotten("npm run dev", {row(8, "node", 1)});
  show({row(8, "node", 1)}, {again});
  EXPECT_THAT(model.keptItems(), ElementsAre(again));
}

TEST_F(PowerModelLeftRunningTest, AStopEndsTheRowsProcessesAndTellsWhatItFreed) {
  show({server, worker, daemon, row(4, "node", 1, kRoot)},
       {forgotten("npm run dev", {server, worker, row(4, "node", 1, kRoot)})});
  model.stop(model.forgottenRows().at(0));
  EXPECT_THAT(world.control.log, ElementsAre("terminate 1-1749000000", "terminate 2-1749000000"))
      << "another user's process is left alone";
  ASSERT_TRUE(model.lastFreed()->has_value());
  EXPECT_EQ(**model.lastFreed(),
            (PowerModel::Freed{.date = world.scheduler.wall, .bytes = 3 << 20}))
      << "what was asked for";
}

TEST_F(PowerModelLeftRunningTest, StoppingAllSparesWhatIsKept) {
  const ForgottenItem kept = forgotten("npm run dev", {server});
  show({server, worker, daemon},
       {kept, forgotten("watch", {worker}), forgotten("Gradle daemon", {daemon})});
  model.keep(kept);
  model.stopAllForgotten();
  EXPECT_THAT(world.control.log, ElementsAre("terminate 3-1749000000", "terminate 2-1749000000"));
  EXPECT_EQ((*model.lastFreed())->bytes, 2U << 20);
}

TEST_F(PowerModelLeftRunningTest, StoppingAllOfNothingFreesNothing) {
  model.stopAllForgotten();
  ASSERT_TRUE(model.lastFreed()->has_value());
  EXPECT_EQ((*model.lastFreed())->bytes, 0U);
}

TEST_F(PowerModelLeftRunningTest, ASimulatorIsShutDownAndNotSignalled) {
  ForgottenItem simulator = forgotten("iOS Simulator · iPhone 17", {server, worker});
  simulator.simulatorUDID = "0F1E2D3C-4B5A-4968-8776-655443322110";
  show({server, worker}, {simulator});
  model.stop(model.forgottenRows().at(0));
  EXPECT_THAT(world.control.log, IsEmpty());
  EXPECT_EQ(world.scheduler.priorities.back(), WorkPriority::utility);
  EXPECT_THAT(world.machine.log, IsEmpty());
  world.scheduler.runBackground();
  EXPECT_THAT(world.machine.log, ElementsAre("commands.start /usr/bin/xcrun simctl shutdown "
                                             "0F1E2D3C-4B5A-4968-8776-655443322110"));
  EXPECT_EQ((*model.lastFreed())->bytes, 2U << 20);
}

TEST_F(PowerModelLeftRunningTest, WithoutABatteryNoTimeIsTold) {
  show({server}, {});
  EXPECT_EQ(model.runtimeAtWatts(5), std::nullopt);
  EXPECT_EQ(model.minutesGainedStopping(1), std::nullopt);
  EXPECT_EQ(model.meaningfulGainStopping(1), std::nullopt);
  EXPECT_EQ(model.unattributedWatts(), std::nullopt);
}

TEST_F(PowerModelLeftRunningTest, TheRuntimeIsOfThePresentTotal) {
  battery = onBattery(80);
  battery->minutesRemaining = 300;
  show({row(1, "a", 10)}, {});
  EXPECT_EQ(model.runtimeAtWatts(5), 600);
  EXPECT_EQ(model.minutesGainedStopping(5), 300);
  EXPECT_EQ(model.meaningfulGainStopping(5), 300);
}

TEST_F(PowerModelLeftRunningTest, WhatNoAppDrawsIsTheScreensAndTheRests) {
  battery = onBattery(80);
  show({row(1, "a", 10)}, {});
  EXPECT_EQ(model.unattributedWatts(), std::nullopt) << "the battery does not tell the total";
  battery->systemWatts = 14;
  show({row(1, "a", 10)}, {});
  EXPECT_EQ(model.unattributedWatts(), 4);
  battery->systemWatts = 9;
  show({row(1, "a", 10)}, {});
  EXPECT_EQ(model.unattributedWatts(), 0) << "the apps add up to more";
}

}  // namespace
}  // namespace embrix
