#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include "worlds/model_world.h"

namespace embrix {
namespace {

using namespace std::literals;

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class PowerModelApplyTest : public testing::Test {
 protected:
  PowerModelApplyTest() { world.start(); }

  // Frames every ten seconds up to `end`, all with these groups.
  void fill(double start, double end, const std::vector<AppGroup>& groups) {
    for (double date = start; date <= end; date += 10) world.take(frameAt(date, groups));
  }

  ModelWorld world;
  const PowerModel& model = world.model();
};

TEST_F(PowerModelApplyTest, TheFirstFrameLeavesAPointAndAveragesButNoEnergyAndNoAlert) {
  world.alertAt(3, 5);
  Frame frame = frameAt(kMorning, {app("Safari", 30)});
  frame.battery = onBattery(80);
  frame.thermalState = ThermalState::critical;
  world.take(frame);
  EXPECT_THAT(model.history()->points(), SizeIs(1));
  EXPECT_EQ(model.tenMinuteAverages()->at("Safari.app"sv), 30);
  EXPECT_EQ(model.ledger()->totalWattHours, 0);
  ASSERT_TRUE(model.discharge()->has_value());
  EXPECT_EQ((*model.discharge())->totalWattHours, 0);
  EXPECT_THAT(world.notifier.posted, IsEmpty());
}

TEST_F(PowerModelApplyTest, APointHoldsWhatTheFrameTold) {
  Frame frame = frameAt(kMorning, {app("Safari", 8, 1), app("Mail", 1, 2), app("Idle", 0.01, 3)});
  frame.battery = onBattery(80);
  frame.battery->systemWatts = 14;
  frame.temperature = 55.5;
  world.take(frame);
  const HistoryPoint& point = model.history()->points().front();
  EXPECT_EQ(point.time, kMorning);
  EXPECT_EQ(point.systemWatts, 14);
  EXPECT_EQ(point.temperature, 55.5);
  EXPECT_DOUBLE_EQ(point.cpuPercent, 90.1) << "of all groups, also of those that leave no trace";
  EXPECT_EQ(point.label, SharedText("Safari"));
  EXPECT_EQ(point.groupWatts.size(), 2U);
}

TEST_F(PowerModelApplyTest, AGroupBelowATwentiethOfAWattStaysInTheFrameAlone) {
  world.take(frameAt(kMorning, {app("Safari", 0.05, 1), app("Mail", 0.04, 2)}));
  const HistoryPoint& point = model.history()->points().front();
  EXPECT_NE(point.groupWatts.find("Safari.app"), nullptr) << "exactly a twentieth counts";
  EXPECT_EQ(point.groupWatts.find("Mail.app"), nullptr);
  EXPECT_TRUE(model.groupNames()->contains("Safari.app"sv));
  EXPECT_FALSE(model.groupNames()->contains("Mail.app"sv));
  EXPECT_THAT((*model.frame())->groups, SizeIs(2));
}

TEST_F(PowerModelApplyTest, ANameIsTheLastSeenAndStaysWhenItsGroupIsGone) {
  world.take(frameAt(kMorning, {group("a", "Old", {row(1, "a", 2)})}));
  world.take(frameAt(kMorning + 2, {group("a", "New", {row(1, "a", 2)})}));
  world.take(frameAt(kMorning + 4));
  EXPECT_EQ(model.groupNames()->at("a"sv), SharedText("New"));
}

TEST_F(PowerModelApplyTest, TheFiftyFirstGroupHasNoAverage) {
  std::vector<AppGroup> groups;
  for (int i = 0; i < 52; ++i) groups.push_back(app(fmt::format("App{}", i), 100 - i, 100 + i));
  world.take(frameAt(kMorning, groups));
  EXPECT_THAT(*model.tenMinuteAverages(), SizeIs(50));
  EXPECT_TRUE(model.tenMinuteAverages()->contains("App49.app"sv));
  EXPECT_FALSE(model.tenMinuteAverages()->contains("App50.app"sv));
}

TEST_F(PowerModelApplyTest, AnAverageCountsTheMomentsWithoutTheGroupAsZero) {
  world.take(frameAt(kMorning - 601, {app("Safari", 1000)}));  // too old by the last frame
  world.take(frameAt(kMorning - 600, {app("Safari", 6)}));     // exactly as old as counts
  world.take(frameAt(kMorning - 10));
  world.take(frameAt(kMorning, {app("Safari", 3)}));
  EXPECT_DOUBLE_EQ(model.tenMinuteAverages()->at("Safari.app"sv), 3);
}

TEST_F(PowerModelApplyTest, AGroupThatLeavesTheFrameLosesItsAverage) {
  world.take(frameAt(kMorning, {app("Safari", 6)}));
  world.take(frameAt(kMorning + 2));
  EXPECT_THAT(*model.tenMinuteAverages(), IsEmpty());
}

TEST_F(PowerModelApplyTest, AYoungHistoryHasNoRunawaysHoweverHighThePower) {
  world.alertAt(3, 5);
  fill(kMorning, kMorning + 290, {app("Safari", 100)});
  EXPECT_THAT(*model.runaways(), IsEmpty());
  world.take(frameAt(kMorning + 299, {app("Safari", 100)}));
  EXPECT_THAT(*model.runaways(), IsEmpty()) << "4 minutes 59 seconds";
  world.take(frameAt(kMorning + 300, {app("Safari", 100)}));
  EXPECT_THAT(*model.runaways(), ElementsAre(SharedText("Safari.app")));
}

TEST_F(PowerModelApplyTest, AnotherThresholdOrLengthHoldsFromTheNextFrameOn) {
  world.alertAt(3, 1);
  fill(kMorning, kMorning + 60, {app("Safari", 5), app("Mail", 2, 101)});
  EXPECT_THAT(*model.runaways(), ElementsAre(SharedText("Safari.app")));
  world.alertAt(1, 1);
  world.take(frameAt(kMorning + 62, {app("Safari", 5), app("Mail", 2, 101)}));
  EXPECT_THAT(*model.runaways(), SizeIs(2));
  world.alertAt(1, 2);
  world.take(frameAt(kMorning + 64, {app("Safari", 5), app("Mail", 2, 101)}));
  EXPECT_THAT(*model.runaways(), IsEmpty()) << "the history is younger than two minutes";
}

TEST_F(PowerModelApplyTest, TheTotalIsNeverBelowWhatTheAppsAddUpTo) {
  EXPECT_EQ(model.totalWatts(), 0) << "without a frame";
  Frame frame = frameAt(kMorning, {app("Safari", 6, 1), app("Mail", 5, 2)});
  world.take(frame);
  EXPECT_EQ(model.totalWatts(), 11);
  frame.battery = onBattery(80);
  frame.battery->systemWatts = 10;
  world.take(frame);
  EXPECT_EQ(model.totalWatts(), 11);
  frame.battery->systemWatts = 12.5;
  world.take(frame);
  EXPECT_EQ(model.totalWatts(), 12.5);
}

TEST_F(PowerModelApplyTest, APIDIsFoundInTheFirstGroupThatHasIt) {
  EXPECT_EQ(model.groupForPID(7), nullptr) << "without a frame";
  world.take(frameAt(kMorning, {app("Safari", 6, 7), app("Mail", 5, 7), app("Notes", 1, 8)}));
  ASSERT_NE(model.groupForPID(7), nullptr);
  EXPECT_EQ(model.groupForPID(7)->identity.name, "Safari");
  EXPECT_EQ(model.groupForPID(8)->identity.name, "Notes");
  EXPECT_EQ(model.groupForPID(9), nullptr);
}

TEST_F(PowerModelApplyTest, ASeriesIsTheWindowsWattsAsMeans) {
  for (int i = 0; i < 10; ++i) world.take(frameAt(kMorning + i, {app("Safari", 1 + i)}));
  EXPECT_THAT(model.seriesFor("Safari.app", 100, 3), ElementsAre(2, 5, 8.5));
  EXPECT_THAT(model.seriesFor("Safari.app", 3, 10), ElementsAre(7, 8, 9, 10));
  EXPECT_THAT(model.seriesFor("Mail.app", 3, 10), ElementsAre(0, 0, 0, 0));
}

TEST_F(PowerModelApplyTest, ReadersAreToldWhenTheWholeFrameIsTaken) {
  std::vector<std::string> told;
  const Subscription frames = model.frame().subscribe([&](const auto&) {
    EXPECT_THAT(model.history()->points(), SizeIs(1));
    EXPECT_THAT(*model.tenMinuteAverages(), SizeIs(1));
    EXPECT_TRUE(world.suite.stored(ControlState::kKey).has_value());
    told.emplace_back("frame");
  });
  const Subscription history =
      model.history().subscribe([&](const auto&) { told.emplace_back("history"); });
  world.take(frameAt(kMorning, {app("Safari", 6)}));
  EXPECT_THAT(told, ElementsAre("frame", "history"));
}

TEST_F(PowerModelApplyTest, EqualFramesTellOfFrameAndHistoryAndOfNothingElse) {
  world.defaults.set(SettingKeys::kSampleInterval, 40.0);  // so that each frame saves
  Frame frame = frameAt(kMorning, {app("Safari", 6)});
  frame.battery = onBattery(80);
  world.take(frame);
  world.take(frame);  // the first that has one before it sets the day's peak
  std::vector<std::string> told;
  std::vector<Subscription> subscriptions;
  const auto listenTo = [&](const auto& field, const char* name) {
    subscriptions.push_back(
        field.subscribe([&told, name](const auto&) { told.emplace_back(name); }));
  };
  listenTo(model.frame(), "frame");
  listenTo(model.history(), "history");
  listenTo(model.tenMinuteAverages(), "averages");
  listenTo(model.runaways(), "runaways");
  listenTo(model.groupNames(), "names");
  listenTo(model.calmed(), "calmed");
  listenTo(model.ledger(), "ledger");
  listenTo(model.archive(), "archive");
  listenTo(model.overnight(), "overnight");
  listenTo(model.lastFreed(), "freed");
  listenTo(model.calmRules(), "rules");
  listenTo(model.visibleSurfaces(), "surfaces");
  listenTo(model.dashboardSection(), "section");
  listenTo(model.isFixture(), "fixture");
  listenTo(model.discharge(), "discharge");
  listenTo(model.baseline(), "baseline");
  listenTo(model.autoCalmed(), "autoCalmed");
  listenTo(model.kept(), "kept");
  world.take(frame);
  world.take(frame);
  EXPECT_THAT(told, UnorderedElementsAre("frame", "frame", "history", "history"));
}

TEST_F(PowerModelApplyTest, TheDayTellsOfEveryChangeAndOnlyOfThose) {
  std::vector<DayLedger> told;
  const Subscription ledger =
      model.ledger().subscribe([&](const DayLedger& day) { told.push_back(day); });
  world.take(frameAt(kMorning));
  world.take(frameAt(kMorning + 2));
  EXPECT_THAT(told, IsEmpty()) << "nobody draws anything";
  world.take(frameAt(kMorning + 4, {app("Safari", 6)}));
  EXPECT_THAT(told, SizeIs(1));
  world.take(frameAt(kMorning + 4, {app("Safari", 5)}));
  EXPECT_THAT(told, SizeIs(1)) << "no time passed, and the peak was higher";
  world.take(frameAt(kMorning + 4, {app("Safari", 7)}));
  EXPECT_THAT(told, SizeIs(2)) << "a new peak";
  world.take(frameAt(kMorning - 2, {app("Mail", 7)}));
  EXPECT_THAT(told, SizeIs(3)) << "a name, though the clock was set back";
  Frame screen = frameAt(kMorning);
  screen.battery = onBattery(80);
  screen.battery->systemWatts = 5;
  world.take(screen);
  EXPECT_THAT(told, SizeIs(4)) << "energy that no app drew";
  world.take(frameAt(kMorning + 86400));
  EXPECT_THAT(told, SizeIs(5)) << "another day";
  EXPECT_EQ(told.back(), *model.ledger());
}

// Each step of a frame reads what the ones before it wrote: the day is judged by what was normal
// before the frame, rules and the control by what is normal with it.
TEST_F(PowerModelApplyTest, AFrameCountsForWhatIsNormalOnlyAfterItsDayIsWritten) {
  PowerModel& own = world.model();
  own.addCalmRule("Safari", CalmRule::Condition::whenHot);
  double date = kMorning;
  for (int i = 0; i < 59; ++i, date += 30) world.take(frameAt(date, {app("Safari", 15)}));
  EXPECT_EQ(model.thresholds(), (LoadThresholds{.warm = 10, .hot = 18})) << "one sample short";
  const double before = model.ledger()->hotSeconds;
  const Frame last = frameAt(date, {app("Safari", 20)});
  world.bringToLife(last);
  world.take(last);
  EXPECT_EQ(model.thresholds(), (LoadThresholds{.warm = 24, .hot = 41}));
  EXPECT_EQ(model.ledger()->hotSeconds - before, 30) << "hot by the old threshold";
  EXPECT_THAT(*model.calmed(), IsEmpty()) << "calm by the new one";
  EXPECT_FALSE(ControlState::load(&world.suite)->hot);
}

TEST_F(PowerModelApplyTest, ARunawayIsAlertedWithTheFrameThatMakesItOne) {
  world.alertAt(3, 1);
  fill(kMorning, kMorning + 50, {app("Safari", 5)});
  std::vector<std::string> told;
  const Subscription runaways = model.runaways().subscribe([&](const GroupKeys& keys) {
    EXPECT_THAT(keys, SizeIs(1));
    EXPECT_THAT(world.notifier.posted, SizeIs(1));
    told.emplace_back("runaways");
  });
  fill(kMorning + 60, kMorning + 60, {app("Safari", 5)});
  EXPECT_THAT(told, ElementsAre("runaways"));
}

TEST_F(PowerModelApplyTest, ASaveHoldsTheFrameThatItFollows) {
  world.defaults.set(SettingKeys::kSampleInterval, 40.0);
  Frame frame = frameAt(kMorning, {app("Safari", 36)});
  frame.battery = onBattery(80);
  world.take(frame);
  frame.date += 10;
  world.take(frame);
  EXPECT_EQ(world.store.loadLedger(), *model.ledger());
  EXPECT_EQ(world.store.loadDischarge(), *model.discharge());
  EXPECT_EQ(world.store.loadBaseline(), *model.baseline());
  EXPECT_EQ(world.store.loadArchive()->days()[0].wattHours, 0.1);
  EXPECT_THAT(world.store.load(0), SizeIs(2));
}

TEST_F(PowerModelApplyTest, AReaderMayUseTheModelWhileItIsTold) {
  PowerModel& own = world.model();
  const Frame frame = frameAt(kMorning, {app("Safari", 6)});
  world.bringToLife(frame);
  const Subscription a = own.frame().subscribe(
      [&](const std::optional<Frame>& present) { own.calm(present->groups[0].processes); });
  int told = 0;
  const Subscription b = own.calmed().subscribe([&](const auto&) { ++told; });
  world.take(frame);
  EXPECT_EQ(told, 1);
  EXPECT_THAT(*own.calmed(), ElementsAre(100));
}

TEST_F(PowerModelApplyTest, ABaselineTakesASampleEveryHalfMinute) {
  fill(kMorning, kMorning + 90, {app("Safari", 6)});
  EXPECT_THAT(model.baseline()->samples(), SizeIs(4));
}

}  // namespace
}  // namespace embrix
