#include "model/load_level.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "worlds/model_world.h"

namespace embrix {
namespace {

struct ThresholdCase {
  std::string label;
  int cores = 0;
  std::optional<double> median;
  double warm = 0;
  double hot = 0;
};

class ThresholdRule : public testing::TestWithParam<ThresholdCase> {};

TEST_P(ThresholdRule, FollowsTheChipAndTheMedian) {
  const auto [label, cores, median, warm, hot] = GetParam();
  EXPECT_EQ(LoadThresholds::automatic(cores, median), (LoadThresholds{.warm = warm, .hot = hot}));
}

INSTANTIATE_TEST_SUITE_P(LoadLevelTest, ThresholdRule,
                         testing::Values(ThresholdCase{"UnknownChip", 0, {}, 10, 18},
                                         ThresholdCase{"NegativeCores", -1, {}, 10, 18},
                                         ThresholdCase{"FiveCores", 5, {}, 10, 18},
                                         ThresholdCase{"SixCores", 6, {}, 14, 25},
                                         ThresholdCase{"SevenCores", 7, {}, 14, 25},
                                         ThresholdCase{"EightCores", 8, {}, 20, 35},
                                         ThresholdCase{"ManyCores", 64, {}, 20, 35},
                                         ThresholdCase{"TheFloorWinsAtBoth", 8, 9.4, 20, 35},
                                         ThresholdCase{"TheMedianWinsAtBoth", 8, 15, 24, 41},
                                         ThresholdCase{"HalvesGoAwayFromZero", 4, 7.8125, 13, 22},
                                         ThresholdCase{"AFloorAtWarmLiftsHot", 6, 1, 14, 25},
                                         ThresholdCase{"AVeryQuietMachineStaysAtTheFloors", 4, 0.1,
                                                       10, 18}),
                         [](const auto& test) { return test.param.label; });

struct LevelCase {
  std::string label;
  LoadThresholds thresholds;
  double watts = 0;
  LoadLevel expected = LoadLevel::calm;
};

class LevelRule : public testing::TestWithParam<LevelCase> {};

TEST_P(LevelRule, IsReachedAtItsThreshold) {
  EXPECT_EQ(GetParam().thresholds.levelAt(GetParam().watts), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    LoadLevelTest, LevelRule,
    testing::Values(LevelCase{"Below", {10, 18}, 9.99, LoadLevel::calm},
                    LevelCase{"AtWarm", {10, 18}, 10, LoadLevel::warm},
                    LevelCase{"BelowHot", {10, 18}, 17.99, LoadLevel::warm},
                    LevelCase{"AtHot", {10, 18}, 18, LoadLevel::hot},
                    LevelCase{"WarmAboveHot", {20, 10}, 12, LoadLevel::hot},
                    LevelCase{"WarmAboveHotAndBelowBoth", {20, 10}, 9, LoadLevel::calm},
                    LevelCase{"ThresholdsOfZero", {0, 0}, 0, LoadLevel::hot},
                    LevelCase{"NoNumbers", {std::nan(""), std::nan("")}, 50, LoadLevel::calm}),
    [](const auto& test) { return test.param.label; });

TEST(LoadLevelTest, EveryLevelHasItsWord) {
  EXPECT_EQ(loadLevelWord(LoadLevel::calm), "calm");
  EXPECT_EQ(loadLevelWord(LoadLevel::warm), "warm");
  EXPECT_EQ(loadLevelWord(LoadLevel::hot), "hot");
}

class PowerModelLevelTest : public testing::Test {
 protected:
  void setByHand(double warm, double hot) {
    world.defaults.set(SettingKeys::kAutomaticHeat, false);
    world.defaults.set(SettingKeys::kWarmWatts, warm);
    world.defaults.set(SettingKeys::kHotWatts, hot);
  }

  ModelWorld world;
};

TEST_F(PowerModelLevelTest, WithoutAFrameTheMachineIsCalmUnlessAThresholdIsZeroOrBelow) {
  EXPECT_EQ(world.model().loadLevel(), LoadLevel::calm);
  setByHand(0, 15);
  EXPECT_EQ(world.model().loadLevel(), LoadLevel::warm);
  setByHand(8, -1);
  EXPECT_EQ(world.model().loadLevel(), LoadLevel::hot);
}

TEST_F(PowerModelLevelTest, ThresholdsSetByHandStandExactlyAsTheyAre) {
  setByHand(20, 10);
  world.start();
  world.take(frameAt(kMorning, {app("Safari", 12)}));
  EXPECT_EQ(world.model().thresholds(), (LoadThresholds{.warm = 20, .hot = 10}));
  EXPECT_EQ(world.model().loadLevel(), LoadLevel::hot);
}

TEST_F(PowerModelLevelTest, FiftyNineSamplesAreStillLearningAndSixtyAreNot) {
  world.start();
  double date = kMorning;
  const auto learn = [&](int samples) {
    for (int i = 0; i < samples; ++i, date += 30) world.take(frameAt(date, {app("Safari", 15)}));
  };
  learn(59);
  EXPECT_EQ(world.model().thresholds(), (LoadThresholds{.warm = 10, .hot = 18}));
  learn(1);
  EXPECT_EQ(world.model().thresholds(), (LoadThresholds{.warm = 24, .hot = 41}));
}

TEST_F(PowerModelLevelTest, AThrottledMachineIsHotAndHeatedAtAnyLevel) {
  world.start();
  Frame frame = frameAt(kMorning, {app("Safari", 1)});
  frame.thermalState = ThermalState::serious;
  world.take(frame);
  EXPECT_EQ(world.model().loadLevel(), LoadLevel::calm);
  EXPECT_TRUE(world.model().isHeated());
  EXPECT_TRUE(world.model().isHot());
}

TEST_F(PowerModelLevelTest, AWarmMachineIsHeatedAndNotHot) {
  world.start();
  world.take(frameAt(kMorning, {app("Safari", 10)}));
  EXPECT_TRUE(world.model().isHeated());
  EXPECT_FALSE(world.model().isHot());
  world.take(frameAt(kMorning + 2, {app("Safari", 18)}));
  EXPECT_TRUE(world.model().isHot());
  Frame fair = frameAt(kMorning + 4, {app("Safari", 1)});
  fair.thermalState = ThermalState::fair;
  world.take(fair);
  EXPECT_FALSE(world.model().isHeated());
}

}  // namespace
}  // namespace embrix
