#include "sampling/gpu_attribution.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace embrix {
namespace {

using Deltas = HashMap<std::int32_t, std::uint64_t>;
using Shares = std::map<std::int32_t, double>;

Shares split(double gpuWatts, const Deltas& deltas) {
  const auto shares = GPUAttribution::split(gpuWatts, deltas);
  return Shares(shares.begin(), shares.end());
}

TEST(GPUAttributionTest, SharesAreInProportionToTime) {
  EXPECT_EQ(split(4, {{10, 1}, {20, 3}}), (Shares{{10, 1}, {20, 3}}));
}

TEST(GPUAttributionTest, OnlyUserGetsEverything) {
  EXPECT_EQ(split(2.5, {{10, 7}}), (Shares{{10, 2.5}}));
}

TEST(GPUAttributionTest, WithoutPowerNobodyGetsAShare) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double watts :
       {0.0, -0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), kInfinity, -kInfinity}) {
    EXPECT_EQ(split(watts, {{10, 1}, {20, 3}}), Shares()) << watts;
  }
}

TEST(GPUAttributionTest, WithoutTimeNobodyGetsAShare) {
  EXPECT_EQ(split(4, {}), Shares());
  EXPECT_EQ(split(4, {{10, 0}, {20, 0}}), Shares());
}

TEST(GPUAttributionTest, LargestTimesThatCanBeSummedAreShared) {
  const Shares shares = split(4, {{10, 1ULL << 63}, {20, (1ULL << 63) - 1}});
  EXPECT_DOUBLE_EQ(shares.at(10), 2);
  EXPECT_DOUBLE_EQ(shares.at(20), 2);
}

TEST(GPUAttributionTest, TimesWhoseSumWrapsAreNotShared) {
  EXPECT_EQ(split(4, {{10, 1ULL << 63}, {20, 1ULL << 63}}), Shares());        // to 0
  EXPECT_EQ(split(4, {{10, 1ULL << 63}, {20, (1ULL << 63) + 2}}), Shares());  // to 2
  EXPECT_EQ(split(4, {{10, UINT64_MAX}, {20, UINT64_MAX}}), Shares());
}

TEST(GPUAttributionTest, SharesOfTheTickBeforeAreGone) {
  HashMap<std::int32_t, double> shares{{99, 5.0}};
  GPUAttribution::split(4, {{10, 1}}, shares);
  EXPECT_FALSE(shares.contains(99));
  GPUAttribution::split(0, {{10, 1}}, shares);
  EXPECT_TRUE(shares.empty());
}

RC_GTEST_PROP(GPUAttributionPropertyTest, SharesSumToThePower, ()) {
  const auto times = *rc::gen::container<std::map<std::int32_t, std::uint32_t>>(
      rc::gen::arbitrary<std::int32_t>(), rc::gen::arbitrary<std::uint32_t>());
  const double watts = *rc::gen::inRange(1, 100000) / 100.0;
  Deltas deltas;
  std::uint64_t total = 0;
  for (const auto& [pid, time] : times) {
    deltas[pid] = time;
    total += time;
  }
  const Shares shares = split(watts, deltas);
  double sum = 0;
  for (const auto& [pid, share] : shares) sum += share;
  RC_ASSERT(shares.size() == (total == 0 ? 0 : times.size()));
  RC_ASSERT(std::abs(sum - (total == 0 ? 0 : watts)) < 1e-9 * watts);
}

}  // namespace
}  // namespace embrix
