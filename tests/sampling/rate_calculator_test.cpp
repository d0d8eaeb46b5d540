#include "sampling/rate_calculator.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace embrix {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::uint64_t kSecond = 1'000'000'000;  // nanoseconds, and a joule in nanojoules
using Samples = std::vector<ProcessSample>;
using Rates = std::vector<std::optional<ProcessRate>>;

struct Counters {
  std::uint64_t startTime = 1000;
  std::optional<std::uint64_t> energyNJ = 0;
  std::uint64_t cpuNS = 0;
  std::uint64_t wakeups = 0;
};

ProcessSample sample(std::int32_t pid, const Counters& counters) {
  ProcessSample made;
  made.pid = pid;
  made.startTime = counters.startTime;
  made.energyNJ = counters.energyNJ;
  made.cpuNS = counters.cpuNS;
  made.wakeups = counters.wakeups;
  return made;
}

Rates ratesOf(const Samples& previous, const Samples& current, double interval) {
  Rates rates;
  RateCalculator::rates(PreviousSamples(previous), current, interval, rates);
  return rates;
}

std::optional<ProcessRate> rateOf(const Counters& previous, const Counters& current,
                                  double interval) {
  return ratesOf({sample(7, previous)}, {sample(7, current)}, interval).at(0);
}

const Counters kBefore{.startTime = 1000, .energyNJ = 100, .cpuNS = 200, .wakeups = 300};

TEST(RateCalculatorTest, RatesAreDifferencesOverTheInterval) {
  const auto rate = rateOf({.energyNJ = 1 * kSecond, .cpuNS = 2 * kSecond, .wakeups = 10},
                           {.energyNJ = 7 * kSecond, .cpuNS = 5 * kSecond, .wakeups = 50}, 2);
  ASSERT_TRUE(rate);
  EXPECT_EQ(*rate, (ProcessRate{.pid = 7, .watts = 3, .cpuPercent = 150, .wakeupsPerSecond = 20}));
}

TEST(RateCalculatorTest, IntervalThatIsNoneGivesNoRates) {
  for (const double interval : {0.0, -0.0, -2.0, kNoNumber, kInfinity, -kInfinity, 5e-324}) {
    const Rates rates = ratesOf({sample(7, {})}, {sample(7, {}), sample(8, {})}, interval);
    EXPECT_EQ(rates, Rates(2)) << interval;
  }
}

struct PairCase {
  const char* label;
  Counters current;
  bool hasRate;
};

class RateCalculatorPair : public testing::TestWithParam<PairCase> {};

TEST_P(RateCalculatorPair, HasARateOnlyIfItIsOneProcessThatRanForwards) {
  EXPECT_EQ(rateOf(kBefore, GetParam().current, 2).has_value(), GetParam().hasRate);
}

INSTANTIATE_TEST_SUITE_P(
    RateCalculatorTest, RateCalculatorPair,
    testing::Values(PairCase{"Unchanged", {1000, 100, 200, 300}, true},
                    PairCase{"ReusedPid", {1001, 100, 200, 300}, false},
                    PairCase{"EarlierStart", {999, 100, 200, 300}, false},
                    PairCase{"CPUTimeRanBackwards", {1000, 100, 199, 300}, false},
                    PairCase{"WakeupsRanBackwards", {1000, 100, 200, 299}, false},
                    PairCase{"EnergyRanBackwards", {1000, 99, 200, 300}, false},
                    PairCase{"EnergyGone", {1000, std::nullopt, 200, 300}, true}),
    [](const auto& test) { return test.param.label; });

TEST(RateCalculatorTest, ReusedPidHasARateAgainOnTheNextTick) {
  const Samples first{sample(7, {.startTime = 1000, .energyNJ = 9 * kSecond})};
  const Samples second{sample(7, {.startTime = 2000, .energyNJ = 1 * kSecond})};
  const Samples third{sample(7, {.startTime = 2000, .energyNJ = 5 * kSecond})};
  EXPECT_EQ(ratesOf(first, second, 2)[0], std::nullopt);
  ASSERT_TRUE(ratesOf(second, third, 2)[0]);
  EXPECT_EQ(ratesOf(second, third, 2)[0]->watts, 2);
}

TEST(RateCalculatorTest, WithoutEnergyInOneSampleTheWattsAreZeroAndTheOthersStand) {
  const Counters with{.energyNJ = 5 * kSecond, .cpuNS = kSecond, .wakeups = 4};
  const Counters without{.energyNJ = std::nullopt, .cpuNS = 3 * kSecond, .wakeups = 8};
  Counters later = with;
  later.cpuNS = 5 * kSecond;
  later.wakeups = 12;
  const ProcessRate expected{.pid = 7, .watts = 0, .cpuPercent = 100, .wakeupsPerSecond = 2};
  EXPECT_EQ(rateOf(with, without, 2), expected);
  EXPECT_EQ(rateOf(without, later, 2), expected);
}

TEST(RateCalculatorTest, ProcessThatWasNotThereBeforeHasNoRate) {
  const Rates rates = ratesOf({sample(7, {})}, {sample(8, {}), sample(7, {})}, 2);
  ASSERT_EQ(rates.size(), 2u);
  EXPECT_EQ(rates[0], std::nullopt);
  ASSERT_TRUE(rates[1]);
  EXPECT_EQ(rates[1]->pid, 7);
}

TEST(RateCalculatorTest, LargestDifferenceIsNotLimited) {
  const auto rate =
      rateOf({}, {.energyNJ = UINT64_MAX, .cpuNS = UINT64_MAX, .wakeups = UINT64_MAX}, 0.5);
  ASSERT_TRUE(rate);
  EXPECT_DOUBLE_EQ(rate->watts, 18446744073.709551616 * 2);
  EXPECT_DOUBLE_EQ(rate->cpuPercent, 18446744073.709551616 * 200);
  EXPECT_DOUBLE_EQ(rate->wakeupsPerSecond, 18446744073709551616.0 * 2);
}

TEST(RateCalculatorTest, StorageOfALongerTickLeavesNothingBehind) {
  Rates rates;
  const Samples table{sample(1, {}), sample(2, {}), sample(3, {})};
  RateCalculator::rates(PreviousSamples(table), table, 2, rates);
  RateCalculator::rates(PreviousSamples(table), {sample(9, {})}, 2, rates);
  EXPECT_EQ(rates, Rates(1));
}

rc::Gen<ProcessSample> anySample() {
  const auto energy = rc::gen::maybe(rc::gen::arbitrary<std::uint64_t>());
  return rc::gen::map(
      rc::gen::tuple(rc::gen::inRange(0, 8), rc::gen::inRange<std::uint64_t>(1, 3), energy,
                     rc::gen::arbitrary<std::uint64_t>(), rc::gen::arbitrary<std::uint64_t>()),
      [](const auto& fields) {
        const auto& [pid, startTime, energyNJ, cpuNS, wakeups] = fields;
        ProcessSample made;
        made.pid = pid;
        made.startTime = startTime;
        made.energyNJ = energyNJ ? std::optional(*energyNJ) : std::nullopt;
        made.cpuNS = cpuNS;
        made.wakeups = wakeups;
        return made;
      });
}

// No counters, however wild, may give a rate that poisons a sum.
RC_GTEST_PROP(RateCalculatorPropertyTest, RatesAreFiniteAndNotNegative, ()) {
  const auto previous = *rc::gen::container<Samples>(anySample());
  const auto current = *rc::gen::container<Samples>(anySample());
  const double interval = *rc::gen::arbitrary<double>();
  const Rates rates = ratesOf(previous, current, interval);
  RC_ASSERT(rates.size() == current.size());
  for (std::size_t i = 0; i < rates.size(); ++i) {
    if (!rates[i]) continue;
    RC_ASSERT(rates[i]->pid == current[i].pid);
    for (const double rate : {rates[i]->watts, rates[i]->cpuPercent, rates[i]->wakeupsPerSecond}) {
      RC_ASSERT(std::isfinite(rate));
      RC_ASSERT(rate >= 0);
    }
  }
}

}  // namespace
}  // namespace embrix
