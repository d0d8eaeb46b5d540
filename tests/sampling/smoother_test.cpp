#include "sampling/smoother.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace embrix {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(SmootherTest, FirstUpdateIsTakenAsItIs) {
  for (const double dt : {-1.0, 0.0, 0.1, 1e9}) {
    Smoother smoother(6);
    EXPECT_EQ(smoother.update("1-1", 42, dt), 42) << dt;
  }
}

TEST(SmootherTest, AfterOneTimeConstantAStepHasComeTwoThirdsOfTheWay) {
  Smoother smoother(6);
  smoother.update("1-1", 0, 6);
  EXPECT_NEAR(smoother.update("1-1", 10, 6), 6.32, 0.005);
}

TEST(SmootherTest, VeryLongTickGivesNearlyTheNewValue) {
  Smoother smoother(6);
  smoother.update("1-1", 100, 2);
  EXPECT_NEAR(smoother.update("1-1", 3, 600), 3, 1e-9);
  EXPECT_EQ(smoother.update("1-1", 5, kInfinity), 5);
}

TEST(SmootherTest, TimeThatDoesNotPassDoesNotMoveTheValue) {
  for (const double dt : {0.0, -2.0, -kInfinity, kNoNumber}) {
    Smoother smoother(6);
    smoother.update("1-1", 10, 2);
    EXPECT_EQ(smoother.update("1-1", 50, dt), 10) << dt;
  }
}

TEST(SmootherTest, EveryChangeOfTheTickLengthCounts) {
  Smoother smoother(6);
  smoother.update("1-1", 0, 2);
  const double afterShort = smoother.update("1-1", 10, 1);
  EXPECT_NEAR(afterShort, 10 * (1 - std::exp(-1.0 / 6)), 1e-12);
  const double afterLong = smoother.update("1-1", 10, 12);
  EXPECT_NEAR(afterLong, afterShort + (10 - afterShort) * (1 - std::exp(-2.0)), 1e-12);
}

TEST(SmootherTest, KeysDoNotTouchEachOther) {
  Smoother smoother(6);
  smoother.update("1-1", 10, 2);
  smoother.update("2-1", 20, 2);
  EXPECT_EQ(smoother.update("1-1", 10, 2), 10);
  EXPECT_EQ(smoother.update("2-1", 20, 2), 20);
}

TEST(SmootherTest, PruneDropsWhatIsNotKept) {
  Smoother smoother(6);
  smoother.update("1-1", 10, 2);
  smoother.update("2-1", 20, 2);
  smoother.prune({"2-1", "3-1"});
  EXPECT_EQ(smoother.size(), 1u);
  EXPECT_EQ(smoother.update("1-1", 99, 2), 99);  // first again
  EXPECT_EQ(smoother.update("2-1", 99, 0), 20);
}

TEST(SmootherTest, EmptyKeepSetDropsEverything) {
  Smoother smoother(6);
  for (int i = 0; i < 100; ++i) smoother.update(std::to_string(i), 1, 2);
  smoother.prune({});
  EXPECT_EQ(smoother.size(), 0u);
}

TEST(SmootherTest, ValueThatIsNoNumberDoesNotStay) {
  for (const double bad : {kNoNumber, kInfinity, -kInfinity}) {
    Smoother smoother(6);
    smoother.update("known", 10, 2);
    EXPECT_EQ(smoother.update("known", bad, 2), 10) << bad;
    EXPECT_EQ(smoother.update("known", 10, 2), 10) << bad;
    smoother.update("new", bad, 2);
    EXPECT_EQ(smoother.update("new", 4, 2), 4) << bad;
  }
}

TEST(LaneSmootherTest, LanesAreSmoothedEachForItself) {
  LaneSmoother<3> lanes(6);
  std::array<Smoother, 3> alone{Smoother(6), Smoother(6), Smoother(6)};
  for (int tick = 0; tick < 20; ++tick) {
    const double dt = 1 + tick % 3;
    const std::array<double, 3> values{1.0 * tick, 100.0 - tick * tick, 7.0};
    const auto& smoothed = lanes.update("1-1", values, dt);
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(smoothed[i], alone[i].update("1-1", values[i], dt)) << tick;
    }
  }
}

// Splitting a span into ticks in any way leads to the same value.
RC_GTEST_PROP(SmootherPropertyTest, ResultDoesNotDependOnHowTheTicksFall, ()) {
  const auto tenths = *rc::gen::nonEmpty<std::vector<int>>(
      rc::gen::container<std::vector<int>>(rc::gen::inRange(1, 200)));
  const double from = *rc::gen::inRange(-1000, 1000);
  const double to = *rc::gen::inRange(-1000, 1000);
  Smoother inTicks(6);
  Smoother atOnce(6);
  inTicks.update("1-1", from, 1);
  atOnce.update("1-1", from, 1);
  double total = 0;
  double last = from;
  for (const int tenth : tenths) {
    last = inTicks.update("1-1", to, tenth / 10.0);
    total += tenth / 10.0;
  }
  RC_ASSERT(std::abs(last - atOnce.update("1-1", to, total)) < 1e-9);
}

RC_GTEST_PROP(SmootherPropertyTest, ResultLiesBetweenTheOldAndTheNewValue, ()) {
  const double from = *rc::gen::inRange(-1000000, 1000000);
  const double to = *rc::gen::inRange(-1000000, 1000000);
  const double dt = *rc::gen::inRange(-10, 1000) / 7.0;
  Smoother smoother(6);
  smoother.update("1-1", from, 1);
  const double result = smoother.update("1-1", to, dt);
  RC_ASSERT(result >= std::min(from, to) - 1e-9);
  RC_ASSERT(result <= std::max(from, to) + 1e-9);
}

RC_GTEST_PROP(SmootherPropertyTest, PruneKeepsExactlyTheIntersection, ()) {
  const auto keys = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 300));
  const auto kept = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 300));
  Smoother smoother(6);
  std::map<int, double> expected;
  for (const int key : keys) {
    expected.emplace(key, key);
    smoother.update(std::to_string(key), key, 2);
  }
  HashSet<SharedText> keep;
  for (const int key : kept) keep.insert(std::to_string(key));
  smoother.prune(keep);
  std::erase_if(expected, [&](const auto& entry) {
    return std::find(kept.begin(), kept.end(), entry.first) == kept.end();
  });
  RC_ASSERT(smoother.size() == expected.size());
  for (const auto& [key, value] : expected) {
    RC_ASSERT(smoother.update(std::to_string(key), -1, 0) == value);
  }
}

}  // namespace
}  // namespace embrix
