#include "model/control_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "base/json.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

struct TitleCase {
  std::string label;
  ControlState state;
  std::string expected;
};

class TitleRule : public testing::TestWithParam<TitleCase> {};

TEST_P(TitleRule, TellsWattsAndState) {
  EXPECT_EQ(GetParam().state.title(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    ControlStateTest, TitleRule,
    testing::Values(
        TitleCase{"Cool", {.watts = 4}, "4 W · Cool"},
        TitleCase{"Warm", {.watts = 13, .hot = true}, "13 W · Warm"},
        TitleCase{"ASubject", {.watts = 13, .subject = "Safari", .hot = true}, "13 W · Safari"},
        TitleCase{"ThrottlingHidesTheSubject",
                  {.watts = 40, .subject = "Safari", .hot = true, .throttling = true},
                  "40 W · Throttling"}),
    [](const auto& test) { return test.param.label; });

TEST(ControlStateTest, WhatIsSavedIsLoaded) {
  MemorySettingsStore suite;
  EXPECT_EQ(ControlState::load(&suite), std::nullopt);
  for (const ControlState& state :
       {ControlState{.watts = 12, .subject = "Safari", .hot = true, .throttling = false},
        ControlState{.watts = 0, .subject = std::nullopt, .hot = false, .throttling = true}}) {
    state.save(&suite);
    EXPECT_EQ(ControlState::load(&suite), state);
  }
}

TEST(ControlStateTest, TheJSONLeavesAnAbsentSubjectOut) {
  MemorySettingsStore suite;
  ControlState{.watts = 12, .subject = std::nullopt, .hot = true, .throttling = false}.save(&suite);
  const auto data = std::get<SettingData>(suite.stored("controlState").value());
  EXPECT_EQ(parseJson(data.bytes), Json::parse(R"({"watts":12.0,"hot":true,"throttling":false})"));
}

TEST(ControlStateTest, WithoutASuiteNothingHappens) {
  ControlState{.watts = 12}.save(nullptr);
  EXPECT_EQ(ControlState::load(nullptr), std::nullopt);
}

TEST(ControlStateTest, ASubjectThatIsNoUTF8IsSavedAllTheSame) {
  MemorySettingsStore suite;
  ControlState{.watts = 1, .subject = "a\xff"}.save(&suite);
  ASSERT_TRUE(ControlState::load(&suite).has_value());
  EXPECT_EQ(ControlState::load(&suite)->subject, "a\uFFFD");
}

struct StoredCase {
  std::string label;
  SettingValue stored;
  bool isLoaded = false;
};

class StoredRule : public testing::TestWithParam<StoredCase> {};

TEST_P(StoredRule, IsAbsentOnAnyDoubt) {
  MemorySettingsStore suite;
  suite.set(ControlState::kKey, GetParam().stored);
  EXPECT_EQ(ControlState::load(&suite).has_value(), GetParam().isLoaded);
}

INSTANTIATE_TEST_SUITE_P(
    ControlStateTest, StoredRule,
    testing::Values(
        StoredCase{"Whole", SettingData{R"({"watts":1,"hot":true,"throttling":false})"}, true},
        StoredCase{"ANullSubject",
                   SettingData{R"({"watts":1,"hot":true,"throttling":false,"subject":null})"},
                   true},
        StoredCase{"AnotherKey",
                   SettingData{R"({"watts":1,"hot":true,"throttling":false,"new":[]})"}, true},
        StoredCase{"ASubjectThatIsNoText",
                   SettingData{R"({"watts":1,"hot":true,"throttling":false,"subject":5})"}, false},
        StoredCase{"NoWatts", SettingData{R"({"hot":true,"throttling":false})"}, false},
        StoredCase{"HotIsNoTruth", SettingData{R"({"watts":1,"hot":1,"throttling":false})"}, false},
        StoredCase{"Truncated", SettingData{R"({"watts":1,"hot":tr)"}, false},
        StoredCase{"Empty", SettingData{""}, false},
        StoredCase{"ATextAndNoBytes", std::string(R"({"watts":1,"hot":true,"throttling":false})"),
                   false}),
    [](const auto& test) { return test.param.label; });

class PowerModelControlTest : public testing::Test {
 protected:
  PowerModelControlTest() { world.start(); }

  // Ten seconds after the frame before.
  void show(double watts, ThermalState state = ThermalState::nominal) {
    Frame frame = frameAt(date, {app("Safari", watts)});
    frame.thermalState = state;
    world.suite.remove(ControlState::kKey);
    world.take(frame);
    date += 10;
  }

  bool wasSaved() const { return world.suite.stored(ControlState::kKey).has_value(); }

  ModelWorld world;
  double date = kMorning;
};

TEST_F(PowerModelControlTest, ItTellsTheVerdictTheLevelAndTheHeat) {
  show(12.4);
  EXPECT_EQ(ControlState::load(&world.suite),
            (ControlState{.watts = 12, .subject = "Safari", .hot = true, .throttling = false}))
      << "warm counts as hot";
  show(1, ThermalState::serious);
  EXPECT_EQ(ControlState::load(&world.suite),
            (ControlState{.watts = 1, .subject = std::nullopt, .hot = false, .throttling = true}));
}

TEST_F(PowerModelControlTest, HalfWattsAreRoundedUp) {
  show(2.5);
  EXPECT_EQ(ControlState::load(&world.suite)->watts, 3);
}

TEST_F(PowerModelControlTest, AnotherWholeWattIsSaved) {
  show(12.4);
  show(12.6);
  ASSERT_TRUE(wasSaved());
  EXPECT_EQ(ControlState::load(&world.suite)->watts, 13);
}

TEST_F(PowerModelControlTest, TheSameWholeWattIsNotSavedAgain) {
  show(12.4);
  show(12.3);
  EXPECT_FALSE(wasSaved());
}

class PowerModelReloadTest : public PowerModelControlTest {
 protected:
  PowerModelReloadTest() { world.defaults.set(SettingKeys::kSampleInterval, 5.0); }
};

TEST_F(PowerModelReloadTest, TheFirstChangeReloadsAndTheNextOnesAtMostEveryFifteenSeconds) {
  show(1);
  EXPECT_EQ(world.controls.reloads, 1);
  show(2);  // after 5 seconds
  EXPECT_TRUE(wasSaved());
  EXPECT_EQ(world.controls.reloads, 1);
  show(3);  // after 10
  EXPECT_TRUE(wasSaved());
  EXPECT_EQ(world.controls.reloads, 1);
  show(4);  // after 15
  EXPECT_EQ(world.controls.reloads, 2);
}

TEST_F(PowerModelReloadTest, WithoutAChangeThereIsNoReload) {
  for (int i = 0; i < 10; ++i) show(1);
  EXPECT_EQ(world.controls.reloads, 1);
}

TEST_F(PowerModelReloadTest, AClockThatIsSetBackStopsNoReload) {
  show(1);
  date -= 365 * 86400.0;
  for (int i = 2; i < 5; ++i) show(i);
  EXPECT_EQ(world.controls.reloads, 2);
}

}  // namespace
}  // namespace embrix
