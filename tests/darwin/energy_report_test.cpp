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

std::optional<double> secondsOf(const std::vector<StampedChannel>& channels) {
  return energyInterval(channels, kTick).seconds;
}

TEST(EnergyReportTest, ChannelsGetTheNamesThatAreKnown) {
  EXPECT_EQ(energyInterval({written("DIE_0_CPU Energy", 5, 2), written("ISP0", 7, 2)}, kTick),
            (EnergyInterval{.channels = {{"CPU Energy", "mJ", 5}}, .seconds = 2.0}));
}

TEST(EnergyReportTest, StampsThatAgreeAreTheInterval) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 2), written("ANE0", 0, 2), written("PCPU0", 3, 2)}),
            2.0);
}

TEST(EnergyReportTest, OneBatchCanTakeAWhileToWrite) {
  const auto seconds = secondsOf({written("CPU Energy", 5, 2), written("DRAM0", 5, 2.01)});
  ASSERT_TRUE(seconds);
  EXPECT_NEAR(*seconds, 2.01, 1e-6);
}

TEST(EnergyReportTest, NothingWrittenIsAnIntervalOfZero) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 0, 0), written("DRAM0", 0, 0)}), 0.0);
}

TEST(EnergyReportTest, BatchesOfDifferentRhythmHaveNoCommonInterval) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 2), written("GPU Energy", 5, 1)}), std::nullopt);
  EXPECT_EQ(secondsOf({written("CPU Energy", 0, 0), written("GPU Energy", 5, 1)}), std::nullopt);
  EXPECT_EQ(secondsOf({written("CPU Energy", 0, 0), written("GPU Energy", 5, 0.01)}), std::nullopt);
}

TEST(EnergyReportTest, AStampThatStandsWhileItsCounterMovesIsNoStamp) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 0)}), std::nullopt);
}

TEST(EnergyReportTest, AMissingStampLeavesNoInterval) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 2), unstamped("ANE0", 5)}), std::nullopt);
  StampedChannel half = written("CPU Energy", 5, 2);
  half.before.reset();
  EXPECT_EQ(secondsOf({half}), std::nullopt);
  EXPECT_EQ(secondsOf({}), std::nullopt);
}

TEST(EnergyReportTest, AStampThatGoesBackLeavesNoInterval) {
  StampedChannel back = written("CPU Energy", 5, 2);
  std::swap(back.before, back.after);
  EXPECT_EQ(secondsOf({back}), std::nullopt);
}

TEST(EnergyReportTest, OnlyBlocksAndCoresWithAValueMatter) {
  EXPECT_EQ(secondsOf({written("CPU Energy", 5, 2), unstamped("ISP0", 5),
                       unstamped("ANE", std::numeric_limits<std::int64_t>::min())}),
            2.0);
}

TEST(EnergyReportTest, StampsReachTheirEnds) {
  StampedChannel far = written("CPU Energy", 5, 0);
  far.before = 0;
  far.after = std::numeric_limits<std::uint64_t>::max();
  EXPECT_DOUBLE_EQ(secondsOf({far}).value_or(0), 18446744073709551615.0 / 24e6);
}

}  // namespace
}  // namespace embrix
