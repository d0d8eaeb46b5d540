#include "records/power_baseline.h"

#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr double kNow = 1'750'000'000;

// That many samples, half a minute apart, of 1, 2, 3 ... watts in a shuffled order.
PowerBaseline shuffled(int count) {
  std::vector<double> watts;
  for (int i = 1; i <= count; ++i) watts.push_back(i);
  std::shuffle(watts.begin(), watts.end(), std::mt19937(5));
  PowerBaseline baseline;
  for (std::size_t i = 0; i < watts.size(); ++i) {
    baseline.add(watts[i], kNow + 30 * static_cast<double>(i));
  }
  return baseline;
}

TEST(PowerBaselineTest, With59SamplesThereIsNoMedianYet) {
  EXPECT_EQ(shuffled(59).median(), std::nullopt);
  EXPECT_EQ(PowerBaseline().median(), std::nullopt);
}

TEST(PowerBaselineTest, With60SamplesTheMedianIsTheSortedOneAt30) {
  EXPECT_EQ(shuffled(60).median(), 31);
  EXPECT_EQ(shuffled(61).median(), 31);
}

TEST(PowerBaselineTest, ASampleLessThan30SecondsAfterTheLastIsIgnored) {
  PowerBaseline baseline;
  baseline.add(1, kNow);
  baseline.add(2, kNow + 29.9);
  EXPECT_THAT(baseline.samples(), ElementsAre(1));
  EXPECT_EQ(baseline.lastAdded(), kNow);
  baseline.add(3, kNow + 30);
  EXPECT_THAT(baseline.samples(), ElementsAre(1, 3));
  EXPECT_EQ(baseline.lastAdded(), kNow + 30);
}

TEST(PowerBaselineTest, NoWattsAreIgnoredAndTheNextSampleIsTakenAtOnce) {
  PowerBaseline baseline;
  baseline.add(1, kNow);
  baseline.add(0, kNow + 60);
  baseline.add(-3, kNow + 60);
  EXPECT_EQ(baseline.lastAdded(), kNow);
  baseline.add(2, kNow + 61);
  EXPECT_THAT(baseline.samples(), ElementsAre(1, 2));
}

TEST(PowerBaselineTest, The2881stSampleDropsExactlyTheOldest) {
  PowerBaseline baseline = shuffled(2880);
  EXPECT_THAT(baseline.samples(), SizeIs(2880));
  const std::vector<float> before = baseline.samples();
  baseline.add(5000, baseline.lastAdded() + 30);
  EXPECT_THAT(baseline.samples(), SizeIs(2880));
  EXPECT_TRUE(std::equal(before.begin() + 1, before.end(), baseline.samples().begin()));
  EXPECT_EQ(baseline.samples().back(), 5000);
}

TEST(PowerBaselineTest, ALongerListThanItKeepsIsCutAtTheNextSample) {
  PowerBaseline baseline(std::vector<float>(4000, 7), kNow);
  EXPECT_THAT(baseline.samples(), SizeIs(4000));
  baseline.add(8, kNow + 30);
  EXPECT_THAT(baseline.samples(), SizeIs(2880));
  EXPECT_EQ(baseline.median(), 7);
}

TEST(PowerBaselineTest, AListOfAbsurdLengthIsCutAtOnce) {
  PowerBaseline baseline(std::vector<float>(1'000'000, 7), kNow);
  baseline.add(8, kNow + 30);
  EXPECT_THAT(baseline.samples(), SizeIs(2880));
  EXPECT_EQ(baseline, PowerBaseline(baseline.samples(), kNow + 30));
}

TEST(PowerBaselineTest, ItsTextIsThatOfItsSamplesWhateverHasGone) {
  PowerBaseline baseline;
  EXPECT_EQ(baseline.samplesText(), "");
  baseline.add(9.5, kNow);
  EXPECT_EQ(baseline.samplesText(), "9.5");
  for (int i = 1; i < 6000; ++i) baseline.add(i / 7.0, kNow + 30 * i);
  EXPECT_EQ(baseline.samplesText(), PowerBaseline(baseline.samples(), 0).samplesText());
  EXPECT_THAT(baseline.samplesText(), testing::StartsWith("445.7143,445.85715,"));
}

TEST(PowerBaselineTest, WhatIsNotFiniteIsNoSample) {
  PowerBaseline baseline;
  baseline.add(std::numeric_limits<double>::quiet_NaN(), kNow);
  baseline.add(std::numeric_limits<double>::infinity(), kNow);
  EXPECT_THAT(baseline.samples(), SizeIs(0));
  EXPECT_EQ(baseline.lastAdded(), 0);
}

TEST(PowerBaselineTest, MoreWattsThanASampleCanHoldAreTheMost) {
  PowerBaseline baseline;
  baseline.add(1e300, kNow);
  EXPECT_THAT(baseline.samples(), ElementsAre(std::numeric_limits<float>::max()));
}

// As it was said: while the clock is behind the last sample, none is taken.
TEST(PowerBaselineTest, AClockSetBackHoldsSamplesUpUntilItIsThereAgain) {
  PowerBaseline baseline;
  baseline.add(1, kNow);
  baseline.add(2, kNow - 31'536'000);
  EXPECT_THAT(baseline.samples(), ElementsAre(1));
  baseline.add(3, kNow + 30);
  EXPECT_THAT(baseline.samples(), ElementsAre(1, 3));
}

TEST(PowerBaselineTest, TheMedianIsThatOfASortedCopyAtEveryMoment) {
  std::mt19937 random(3);
  std::uniform_int_distribution<int> watts(1, 40);  // many equal ones
  PowerBaseline baseline;
  for (int i = 0; i < 7000; ++i) {
    baseline.add(watts(random) / 4.0, kNow + 30.0 * i);
    if (i < 60 || i % 7 != 0) continue;
    std::vector<float> sorted = baseline.samples();
    std::nth_element(sorted.begin(),
                     sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2), sorted.end());
    ASSERT_EQ(baseline.median(), sorted[sorted.size() / 2]);
  }
}

}  // namespace
}  // namespace embrix
