#include "darwin/energy_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace embrix {
namespace {

// A machine time unit of an Apple chip: 24 million in a second.
constexpr double kTick = 1.0 / 24'000'000;
constexpr std::uint64_t kSecond = 24'000'000;
constexpr std::uint64_t kStart = 1'000 * kSecond;

StampedChannel written(std::string name, std::int64_t value, double secondsLater) {
  return {.channel = {std::move(name), "mJ", value},
          .before = kStart,
          .after = kStart + static_cast<std::uint64_t>(secondsLater * kSecond)};
}

StampedChannel unstamped(std::string name, std::int64_t value) {
  return {.channel = {std::move(name), "mJ", value}, .before = std::nullopt, .after = std::nullopt};
}

using Seconds = std::optional<std::vector<double>>;

Seconds secondsOf(const std::vector<StampedChannel>& channels) {
  return energyInterval(channels, kTick).seconds;
}

TEST(EnergyReportTest, ChannelsGetTheNamesThatAreKnown) {
  EXPECT_EQ(
      energyInterval({written("ISP0", 7, 1), written("DIE_0_CPU Energy", 5, 2)}, kTick),
      (EnergyInterval{.channels = {{"CPU Energy", "mJ", 5}}, .seconds = std::vector<double>{2.0}}));
}

TEST(EnergyReportTest, EachChannelHasTheTimeBetweenItsOwnWritings) {
  EXPECT_EQ(secondsOf({written("PCPU0", 3, 1.75), written("CPU Energy", 5, 2),
                       written("ANE0", 0, 0), written("GPU Energy", 9, 1)}),
            (Seconds{{2.0, 0.0, 1.0, 1.75}}));
}

TEST(EnergyReportTest, PartsOfABlockKeepTheirOwnTimes) {
  EXPECT_EQ(secondsOf({written("DIE_0_CPU Energy", 5, 2), written("DIE_1_CPU Energy", 5, 1)}),
            (Seconds{{2.0, 1.0}}));
}

TEST(EnergyReportTest, ACoreThatStandsForTheCPUHasItsTimeTwice) {
  EXPECT_EQ(secondsOf({written("PACC0_CPU0", 5, 2)}), (Seconds{{2.0, 2.0}}));
}

TEST(EnergyReportTest, AStampThatStandsWhileItsCounterMovesMakesAllOfThemWorthless) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 0), written("ANE", 5, 2)}), std::nullopt);
}

TEST(EnergyReportTest, AMissingStampLeavesNoneForTheOthers) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 2), unstamped("ANE0", 5)}), std::nullopt);
  StampedChannel half = written("CPU Energy", 5, 2);
  half.before.reset();
  EXPECT_EQ(secondsOf({half}), std::nullopt);
  half.before = kStart;
  half.after.reset();
  EXPECT_EQ(secondsOf({half}), std::nullopt);
  EXPECT_EQ(secondsOf({}), std::nullopt);
}

TEST(EnergyReportTest, AStampThatGoesBackIsNoStamp) {
  StampedChannel back = written("CPU Energy", 5, 2);
  std::swap(back.before, back.after);
  EXPECT_EQ(secondsOf({back}), std::nullopt);
}

TEST(EnergyReportTest, OnlyWhatComesOutMatters) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 2), unstamped("ISP0", 5), unstamped("PCPM", 5),
                       written("DIE_0_CPU Energy", 5, 0),
                       unstamped("ANE", std::numeric_limits<std::int64_t>::min())}),
            (Seconds{{2.0}}));
}

TEST(EnergyReportTest, StampsReachTheirEnds) {
  StampedChannel far = written("CPU Energy", 5, 0);
  far.before = 0;
  far.after = std::numeric_limits<std::uint64_t>::max();
  const Seconds seconds = secondsOf({far});
  ASSERT_TRUE(seconds);
  EXPECT_DOUBLE_EQ((*seconds)[0], 18446744073709551615.0 / 24e6);
}

}  // namespace
}  // namespace embrix
