#include "sampling/published_watts.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

using Channels = std::vector<EnergyChannel>;
using Seconds = std::vector<double>;

EnergyChannel millijoules(std::string name, std::int64_t value) {
  return {.name = std::move(name), .unit = "mJ", .value = value};
}

class PublishedWattsTest : public testing::Test {
 protected:
  // One tick, a second after the one before.
  std::optional<PowerBreakdown> tick(const Channels& channels, const Seconds& seconds) {
    uptime_ += 1;
    return watts_.add(channels, seconds, uptime_);
  }

  PublishedWatts watts_{6};
  double uptime_ = 100;
};

TEST_F(PublishedWattsTest, EachChannelCountsOverItsOwnTime) {
  const auto breakdown = tick({millijoules("CPU Energy", 4000), millijoules("ANE", 1000),
                               millijoules("DRAM", 500), millijoules("PACC0_CPU0", 3000)},
                              {2, 4, 1, 2});
  EXPECT_EQ(breakdown, (PowerBreakdown{.cpu = 2,
                                       .gpu = 0,
                                       .neuralEngine = 0.25,
                                       .memory = 0.5,
                                       .display = 0,
                                       .cores = {{"P0", true, 1.5}}}));
}

TEST_F(PublishedWattsTest, WhatIsNotWrittenKeepsItsFigure) {
  const Channels written = {millijoules("CPU Energy", 4000), millijoules("EACC0_CPU0", 800)};
  const Channels silent = {millijoules("CPU Energy", 0), millijoules("EACC0_CPU0", 0)};
  const auto first = tick(written, {2, 2});
  ASSERT_TRUE(first);
  EXPECT_EQ(tick(silent, {0, 0}), first);
  EXPECT_EQ(tick(silent, {0, -3}), first);
}

TEST_F(PublishedWattsTest, BeforeTheCPUIsPublishedNothingIsKnown) {
  const Channels channels = {millijoules("CPU Energy", 0), millijoules("GPU Energy", 700)};
  EXPECT_EQ(tick(channels, {0, 1}), std::nullopt);
  const auto breakdown = tick({millijoules("CPU Energy", 4000), channels[1]}, {2, 1});
  ASSERT_TRUE(breakdown);
  EXPECT_EQ(breakdown->cpu, 2);
}

TEST_F(PublishedWattsTest, ABlockThatWasNeverWrittenDrawsNothing) {
  const auto breakdown = tick({millijoules("CPU Energy", 4000), millijoules("ANE", 0)}, {2, 0});
  ASSERT_TRUE(breakdown);
  EXPECT_EQ(breakdown->neuralEngine, 0);
}

TEST_F(PublishedWattsTest, AFigureStandsForSoLongAndNoLonger) {
  tick({millijoules("CPU Energy", 1000), millijoules("ANE", 3000)}, {1, 1});
  for (int i = 1; i <= 5; ++i) {
    const auto breakdown = tick({millijoules("CPU Energy", 1000), millijoules("ANE", 0)}, {1, 0});
    EXPECT_EQ(breakdown->neuralEngine, 3) << i;
  }
  EXPECT_EQ(tick({millijoules("CPU Energy", 1000), millijoules("ANE", 0)}, {1, 0})->neuralEngine,
            0);
  EXPECT_EQ(tick({millijoules("CPU Energy", 1000), millijoules("ANE", 500)}, {1, 1})->neuralEngine,
            0.5);
}

TEST_F(PublishedWattsTest, PartsOfOneNameAreToldApartByTheirPlace) {
  tick({millijoules("CPU Energy", 1000), millijoules("CPU Energy", 6000)}, {1, 2});
  const auto breakdown =
      tick({millijoules("CPU Energy", 0), millijoules("CPU Energy", 5000)}, {0, 1});
  ASSERT_TRUE(breakdown);
  EXPECT_EQ(breakdown->cpu, 6);
}

TEST_F(PublishedWattsTest, AChannelThatIsGoneIsForgotten) {
  tick({millijoules("CPU Energy", 1000), millijoules("ANE", 3000)}, {1, 1});
  EXPECT_EQ(tick({millijoules("CPU Energy", 1000)}, {1})->neuralEngine, 0);
  EXPECT_EQ(tick({millijoules("CPU Energy", 1000), millijoules("ANE", 0)}, {1, 0})->neuralEngine,
            0);
}

TEST_F(PublishedWattsTest, ForgettingLeavesNoFigure) {
  tick({millijoules("CPU Energy", 1000)}, {1});
  watts_.forget();
  EXPECT_EQ(tick({millijoules("CPU Energy", 0)}, {0}), std::nullopt);
}

}  // namespace
}  // namespace embrix
