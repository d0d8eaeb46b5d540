#include "surfaces/facts_content.h"

#include <gtest/gtest.h>

#include "worlds/popover_world.h"

namespace embrix {
namespace {

class FactsContentTest : public testing::Test {
 protected:
  FactsContent take(std::optional<BatteryReading> battery) {
    Frame frame = frameAt(world.scheduler.wall, {app("Xcode", 10)});
    frame.battery = battery;
    world.take(frame);
    return FactsContent::of(world.model());
  }

  ModelWorld world;
};

TEST_F(FactsContentTest, WithoutAFrameThereAreOnlyNoFans) {
  EXPECT_EQ(FactsContent::of(world.model()),
            (FactsContent{.battery = {}, .temperature = {}, .fans = "No fans"}));
}

TEST_F(FactsContentTest, TheBatteryTellsHowItIsPowered) {
  world.start();
  BatteryReading charging = onBattery(80);
  charging.isCharging = true;
  charging.externalConnected = true;
  EXPECT_EQ(take(charging).battery->text, "80% · Charging");
  EXPECT_EQ(take(onAdapter(100)).battery->text, "100% · Plugged in");
  // 50 Wh at 10 W last for five hours.
  EXPECT_EQ(take(onBattery(72, 50)).battery->text, "72% · 5h 0m");
  EXPECT_DOUBLE_EQ(take(onBattery(72)).battery->fraction, 0.72);
}

TEST_F(FactsContentTest, WhatTheBatteryDoesNotTellIsLeftOut) {
  world.start();
  EXPECT_EQ(take(BatteryReading{}).battery, (FactsContent::Battery{.fraction = 0, .text = "–"}));
  BatteryReading bare;
  bare.percent = 40;
  EXPECT_EQ(take(bare).battery->text, "40%");
  EXPECT_FALSE(take({}).battery);
}

TEST_F(FactsContentTest, TheTemperatureIsTheChips) {
  world.start();
  Frame frame = frameAt(world.scheduler.wall);
  frame.temperature = 40.6;
  world.take(frame);
  EXPECT_EQ(FactsContent::of(world.model()).temperature, "41°C chip");
}

TEST(FansTextTest, TheFastestFanCounts) {
  EXPECT_EQ(FactsContent::fansText({}), "No fans");
  EXPECT_EQ(FactsContent::fansText({{.rpm = 0}, {.rpm = 99.9}}), "Fans off");
  EXPECT_EQ(FactsContent::fansText({{.rpm = 100}}), "Fans 100 rpm");
  EXPECT_EQ(FactsContent::fansText({{.rpm = 1200}, {.rpm = 2345.6}}), "Fans 2346 rpm");
}

}  // namespace
}  // namespace embrix
