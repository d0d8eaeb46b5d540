#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using namespace std::literals;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PowerModelFixtureTest : public testing::Test {
 protected:
  PowerModelFixtureTest() {
    PowerModel::FixtureData data;
    data.frame = frameAt(kMorning, {group("tool:node", "Node", {server, worker}),
                                    group("tool:dev", "Tools", {adb})});
    data.frame.forgotten = {forgotten("npm run dev", {server, worker}), forgotten("adb", {adb})};
    data.frame.servers = {embrix::server("next-server", server), embrix::server("adb", adb)};
    data.discharge = DischargeSession::begun(kMorning - 3600, 90);
    data.ledger = DayLedger::fresh("2025-06-15");
    data.ledger.totalWattHours = 33;
    data.tenMinuteAverages = {{"tool:node", 4.5}};
    data.history.append({.time = kMorning - 2});
    data.archive = Archive({{.day = "2025-06-14"}});
    data.overnight = Overnight{.darkWakes = 4};
    world.bringToLife(data.frame);
    model.showFixture(std::move(data));
  }

  ModelWorld world;
  PowerModel& model = world.model();
  const ProcessRow server = row(1, "node", 3);
  const ProcessRow worker = row(2, "esbuild", 2);
  const ProcessRow adb = row(3, "adb", 4);
};

TEST_F(PowerModelFixtureTest, EverythingIsShownAndNothingSampled) {
  EXPECT_TRUE(*model.isFixture());
  EXPECT_THAT((*model.frame())->groups, SizeIs(2));
  EXPECT_EQ((*model.discharge())->startPercent, 90);
  EXPECT_EQ(model.ledger()->totalWattHours, 33);
  EXPECT_EQ(model.tenMinuteAverages()->at("tool:node"sv), 4.5);
  EXPECT_THAT(model.history()->points(), SizeIs(1));
  EXPECT_THAT(model.archive()->days(), SizeIs(1));
  EXPECT_EQ((*model.overnight())->darkWakes, 4);
  EXPECT_EQ(model.subjectForGroup("tool:node"), "node in Node");
  EXPECT_EQ(world.scheduler.workWaiting(), 0U);
}

TEST_F(PowerModelFixtureTest, AStopTakesTheRowAwayAtOnceAndSendsNoSignal) {
  model.stop(model.forgottenRows().at(0));
  ASSERT_THAT(model.forgottenRows(), SizeIs(1));
  EXPECT_EQ(model.forgottenRows()[0].item.title, "adb");
  ASSERT_THAT((*model.frame())->groups, SizeIs(1)) << "a group without processes goes, too";
  EXPECT_EQ((*model.frame())->groups[0].identity.name, "Tools");
  EXPECT_THAT((*model.frame())->servers, SizeIs(1));
  EXPECT_EQ((*model.lastFreed())->bytes, 2U << 20);
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelFixtureTest, AQuitTakesOneProcessAwayWithItsWatts) {
  model.quit(worker);
  const AppGroup* node = model.groupForPID(1);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->watts, 3);
  EXPECT_EQ(node->cpuPercent, 30);
  EXPECT_EQ((*model.frame())->groups[0].identity.name, "Tools") << "which now draws more";
  EXPECT_THAT(model.forgottenRows(), SizeIs(1)) << "an item goes with any of its members";
  EXPECT_THAT((*model.frame())->servers, SizeIs(2));
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelFixtureTest, AStopByPIDOrOfAServerIsAQuit) {
  model.stop(1);
  EXPECT_EQ(model.groupForPID(1), nullptr);
  EXPECT_THAT((*model.frame())->servers, SizeIs(1));
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelFixtureTest, AnothersProcessStays) {
  model.quit(row(3, "adb", 4, kRoot));
  EXPECT_NE(model.groupForPID(3), nullptr);
}

TEST_F(PowerModelFixtureTest, ASimulatorGoesByItsRoot) {
  ForgottenRow simulator = model.forgottenRows().at(0);
  simulator.item.simulatorUDID = "FIXTURE-SIMULATOR";
  model.stop(simulator);
  EXPECT_EQ(model.groupForPID(1), nullptr);
  EXPECT_NE(model.groupForPID(2), nullptr);
  world.scheduler.runBackground();
  EXPECT_THAT(world.machine.log, IsEmpty());
}

TEST_F(PowerModelFixtureTest, StoppingAllEmptiesTheRows) {
  model.stopAllForgotten();
  EXPECT_THAT(model.forgottenRows(), IsEmpty());
  EXPECT_THAT((*model.frame())->groups, IsEmpty());
  EXPECT_EQ((*model.lastFreed())->bytes, 3U << 20);
}

TEST_F(PowerModelFixtureTest, CalmingAndRestoringAreShownAndTouchNoProcess) {
  model.calm({server, worker, row(9, "daemon", 1, kRoot)});
  EXPECT_THAT(*model.calmed(), ElementsAre(1, 2));
  model.restore({server});
  EXPECT_THAT(*model.calmed(), ElementsAre(2));
  model.restoreAllCalmed();
  EXPECT_THAT(*model.calmed(), IsEmpty());
  EXPECT_THAT(world.control.log, IsEmpty());
}

TEST_F(PowerModelFixtureTest, ReadersAreToldOfEachChange) {
  int told = 0;
  const Subscription frames = model.frame().subscribe([&](const auto&) { ++told; });
  model.quit(worker);
  EXPECT_EQ(told, 1);
  model.stopAllForgotten();
  EXPECT_EQ(told, 2) << "all that goes in one operation is told once";
}

TEST(PowerModelRemovalTest, NothingIsRemovedFromWhatWasSampled) {
  ModelWorld world;
  world.start();
  world.take(frameAt(kMorning, {app("Safari", 3, 1)}));
  world.model().removeFromFixture(1);
  EXPECT_NE(world.model().groupForPID(1), nullptr);
}

}  // namespace
}  // namespace embrix
