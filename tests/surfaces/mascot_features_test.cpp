#include "surfaces/mascot_features.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(MascotFeaturesTest, EachMoodHasItsRow) {
  const auto happy = MascotFeatures::of(MascotMood::happy);
  EXPECT_EQ(happy.fill, (std::array<double, 3>{1, 1, 1}));
  EXPECT_EQ(happy.mouth, (std::array<double, 6>{50, 77, 70, 77, 60, 86}));
  EXPECT_EQ(happy.blush, 1);
  EXPECT_EQ(happy.sweat, 0);

  const auto sweaty = MascotFeatures::of(MascotMood::sweaty);
  EXPECT_EQ(sweaty.sweat, 1);
  EXPECT_EQ(sweaty.mouth, (std::array<double, 6>{50, 77, 70, 79, 60, 80}));

  const auto stressed = MascotFeatures::of(MascotMood::stressed);
  EXPECT_EQ(stressed.fill, (std::array<double, 3>{1, 0.831, 0.322}));
  EXPECT_EQ(stressed.brows, 1);
  EXPECT_EQ(stressed.blush, 0);
  EXPECT_EQ(stressed.glints, 0);

  const auto relieved = MascotFeatures::of(MascotMood::relieved);
  EXPECT_EQ(relieved.happyEyes, 1);
  EXPECT_EQ(relieved.tuft, 0);
  EXPECT_EQ(relieved.fill, (std::array<double, 3>{0.239, 0.859, 0.706}));

  const auto logo = MascotFeatures::of(MascotMood::logo);
  EXPECT_EQ(logo.eyeRX, 6);
  EXPECT_EQ(logo.eyeRY, 8);
  EXPECT_EQ(logo.happyEyes, 0);
}

TEST(MascotFeaturesTest, NothingPassingIsOnInAnyMood) {
  for (const MascotMood mood : kMascotMoods) {
    const auto face = MascotFeatures::of(mood);
    EXPECT_EQ(face.wink, 0);
    EXPECT_EQ(face.surprise, 0);
    EXPECT_EQ(face.zzz, 0);
  }
}

TEST(MascotFeaturesTest, MixingBlendsEveryNumber) {
  const auto a = MascotFeatures::of(MascotMood::happy);
  const auto b = MascotFeatures::of(MascotMood::stressed);
  EXPECT_EQ(MascotFeatures::mix(a, b, 0), a);
  EXPECT_EQ(MascotFeatures::mix(a, b, 1), b);
  const auto half = MascotFeatures::mix(a, b, 0.5);
  EXPECT_DOUBLE_EQ(half.fill[2], 0.661);
  EXPECT_DOUBLE_EQ(half.brows, 0.5);
  EXPECT_DOUBLE_EQ(half.mouth[1], 79.5);
  EXPECT_DOUBLE_EQ(half.mouth[5], 80.5);
}

TEST(MascotFeaturesTest, ASleepingFaceHasNarrowEyesAndLetters) {
  const auto asleep = MascotFeatures::frozen(MascotMood::happy, MascotFrozenState::dozing);
  EXPECT_EQ(asleep.eyeRX, 5);
  EXPECT_DOUBLE_EQ(asleep.eyeRY, 2.1);
  EXPECT_EQ(asleep.zzz, 1);
  EXPECT_EQ(asleep.glints, 0);
  EXPECT_EQ(asleep.tuft, 1);
  EXPECT_EQ(asleep.mouth, (std::array<double, 6>{54, 79, 66, 79, 60, 81}));
  EXPECT_EQ(MascotFeatures::frozen(MascotMood::logo, MascotFrozenState::dozing).eyeRX, 6);
}

TEST(MascotFeaturesTest, AStillFigureIsHeldInItsState) {
  const auto mood = MascotMood::sweaty;
  EXPECT_EQ(MascotFeatures::frozen(mood, {}), MascotFeatures::of(mood));
  EXPECT_EQ(MascotFeatures::frozen(mood, MascotFrozenState::relief),
            MascotFeatures::of(MascotMood::relieved));
  EXPECT_EQ(MascotFeatures::frozen(mood, MascotFrozenState::wink).wink, 1);
  EXPECT_EQ(MascotFeatures::frozen(mood, MascotFrozenState::surprise).surprise, 1);
  EXPECT_EQ(MascotFeatures::frozen(mood, MascotFrozenState::steam), MascotFeatures::of(mood));
}

}  // namespace
}  // namespace embrix
