#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "model/wording.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

TEST(WordingTest, WattsBelowATwentiethReadAsZero) {
  EXPECT_EQ(Wording::watts(0.04), "0 W");
  EXPECT_EQ(Wording::watts(-1), "0 W");
  EXPECT_EQ(Wording::watts(0.05), "0.1 W");
  EXPECT_EQ(Wording::watts(12.34), "12.3 W");
}

TEST(WordingTest, MinutesAreCutToWholeOnesThatFit) {
  EXPECT_EQ(Wording::wholeMinutes(5.9), 5);
  EXPECT_EQ(Wording::wholeMinutes(-5.9), -5);
  EXPECT_EQ(Wording::wholeMinutes(std::nan("")), 0);
  EXPECT_EQ(Wording::wholeMinutes(1e300), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(Wording::wholeMinutes(-1e300), std::numeric_limits<std::int64_t>::min());
}

class PowerModelWordingTest : public testing::Test {
 protected:
  PowerModelWordingTest() { world.start(); }

  Frame frame(std::vector<AppGroup> groups) { return frameAt(kMorning, std::move(groups)); }
  Frame frameWith(BatteryReading battery, std::vector<AppGroup> groups = {}) {
    Frame made = frame(std::move(groups));
    made.battery = battery;
    return made;
  }

  ModelWorld world;
  PowerModel& model = world.model();
};

TEST_F(PowerModelWordingTest, TheHeadlineFollowsTheLevel) {
  EXPECT_EQ(model.heroHeadline(), "Your Mac is chilling.");
  world.take(frame({app("Safari", 10)}));
  EXPECT_EQ(model.heroHeadline(), "Your Mac is warming up.");
  world.take(frame({app("Safari", 18)}));
  EXPECT_EQ(model.heroHeadline(), "Your Mac is running hot.");
  Frame throttled = frame({app("Safari", 1)});
  throttled.thermalState = ThermalState::critical;
  world.take(throttled);
  EXPECT_EQ(model.heroHeadline(), "Your Mac is cooling itself down.");
}

TEST_F(PowerModelWordingTest, TheExplanationNamesWhomTheVerdictBlames) {
  world.take(frame({group("c", "Code", {row(1, "node", 6)})}));
  EXPECT_EQ(model.heroExplanation(), "node in Code is doing most of the work.");
  world.take(frame({group("c", "Code", {row(1, "node", 3), row(2, "tsc", 3)})}));
  EXPECT_EQ(model.heroExplanation(), "Code is doing most of the work.") << "busy: the app";
}

TEST_F(PowerModelWordingTest, WithoutACulpritTheScreenMayBeIt) {
  EXPECT_EQ(model.heroExplanation(), "No app is working hard.");
  BatteryReading battery = onBattery(80);
  battery.systemWatts = 10;
  const std::vector<AppGroup> five = {app("A", 1.25, 1), app("B", 1.25, 2), app("C", 1.25, 3),
                                      app("D", 1.25, 4)};
  world.take(frameWith(battery, five));
  EXPECT_EQ(model.heroExplanation(), "Mostly your screen. No app is working hard.") << "5 of 10";
  battery.systemWatts = 9.9;
  world.take(frameWith(battery, five));
  EXPECT_EQ(model.heroExplanation(), "No app is working hard.");
}

TEST_F(PowerModelWordingTest, TheStatusIsAWordAndATemperature) {
  EXPECT_EQ(model.statusShort(), "Chilling");
  Frame made = frame({app("Safari", 10)});
  world.take(made);
  EXPECT_EQ(model.statusShort(), "Warm");
  made.temperature = 91.4;
  world.take(made);
  EXPECT_EQ(model.statusShort(), "Warm at 91°C");
  made.thermalState = ThermalState::serious;
  world.take(made);
  EXPECT_EQ(model.statusShort(), "Throttling at 91°C");
  world.take(frame({app("Safari", 18)}));
  EXPECT_EQ(model.statusShort(), "Hot");
}

TEST_F(PowerModelWordingTest, TheBatteryLineTellsHowLongOrHow) {
  EXPECT_EQ(model.batteryLine(), std::nullopt);
  world.take(frame({app("Safari", 10)}));
  EXPECT_EQ(model.batteryLine(), std::nullopt);
  BatteryReading battery = onBattery(80);
  battery.minutesRemaining = 95;
  world.take(frameWith(battery, {app("Safari", 10)}));
  EXPECT_EQ(model.batteryLine(), "1h 35m of battery left");
  world.take(frameWith(onAdapter(80), {app("Safari", 10)}));
  EXPECT_EQ(model.batteryLine(), "On power adapter");
  battery = onAdapter(80);
  battery.isCharging = true;
  world.take(frameWith(battery, {app("Safari", 10)}));
  EXPECT_EQ(model.batteryLine(), "Charging");
}

TEST_F(PowerModelWordingTest, ABatteryThatTellsNothingHasNoLine) {
  world.take(frameWith(BatteryReading{}, {app("Safari", 10)}));
  EXPECT_EQ(model.batteryLine(), std::nullopt);
}

TEST_F(PowerModelWordingTest, AnAlertCallsAGroupByItsHeaviestProgram) {
  EXPECT_EQ(model.subjectForGroup("c"), "c") << "never seen";
  world.take(frame({group("c", "Code", {row(1, "node", 3), row(2, "Code", 1)})}));
  EXPECT_EQ(model.subjectForGroup("c"), "node in Code");
  world.take(frame({group("c", "Code", {row(1, "node", 3), row(2, "node", 1)})}));
  EXPECT_EQ(model.subjectForGroup("c"), "node ×2 in Code");
  world.take(frame({group("c", "Code", {row(1, "Code", 3), row(2, "Code", 1)})}));
  EXPECT_EQ(model.subjectForGroup("c"), "Code");
  world.take(frame({group("c", "Code", {row(1, "com.apple.WebKit.GPU", 3)})}));
  EXPECT_EQ(model.subjectForGroup("c"), "com.apple.WebKit.GPU in Code") << "the raw name";
  world.take(frame({group("c", "Code", {})}));
  EXPECT_EQ(model.subjectForGroup("c"), "Code") << "without processes";
  world.take(frame({}));
  EXPECT_EQ(model.subjectForGroup("c"), "Code") << "gone, and its name still known";
}

}  // namespace
}  // namespace embrix
