#include "model/runaway_detector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kNow = 1'750'000'000;

// Points a second apart, the newest at kNow, with these watts of the one group; 0 leaves it out.
History historyOf(const std::vector<double>& watts) {
  History history(1800);
  double time = kNow - static_cast<double>(watts.size()) + 1;
  for (const double each : watts) {
    HistoryPoint point{.time = time++};
    if (each > 0) point.groupWatts = SharedMap<double>({{"a", each}});
    history.append(point);
  }
  return history;
}

struct RunawayCase {
  std::string label;
  std::vector<double> watts;
  bool expected = false;
};

class RunawayRule : public testing::TestWithParam<RunawayCase> {};

TEST_P(RunawayRule, NeedsFourPointsInFive) {
  const auto found = RunawayDetector::runaways(historyOf(GetParam().watts), kNow, 3, 9);
  EXPECT_EQ(found.contains("a"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    RunawayDetectorTest, RunawayRule,
    testing::Values(
        RunawayCase{"EightOfTenAtTheThreshold", {3, 3, 0, 3, 3, 3, 1, 3, 3, 3}, true},
        RunawayCase{"SevenOfTen", {3, 3, 0, 3, 3, 3, 1, 3, 3, 2.9}, false},
        RunawayCase{"ABurst", {0, 0, 0, 0, 0, 0, 0, 0, 0, 500}, false},
        RunawayCase{"OnlyTheWindowCounts", {0, 0, 0, 0, 0, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3}, true}),
    [](const auto& test) { return test.param.label; });

TEST(RunawayDetectorTest, AHistoryYoungerThanTheWindowHasNone) {
  const History history = historyOf({9, 9, 9, 9, 9, 9, 9, 9, 9, 9});  // 9 seconds
  EXPECT_THAT(RunawayDetector::runaways(history, kNow, 3, 9), SizeIs(1));
  EXPECT_THAT(RunawayDetector::runaways(history, kNow, 3, 9.1), IsEmpty());
  EXPECT_THAT(RunawayDetector::runaways(History(5), kNow, 3, 0), IsEmpty());
}

TEST(RunawayDetectorTest, AThresholdOfZeroPassesEveryKeyThatTheWindowHas) {
  EXPECT_THAT(RunawayDetector::runaways(historyOf({0, 0, 0, 0, 1}), kNow, 0, 4), ElementsAre("a"));
  EXPECT_THAT(RunawayDetector::runaways(historyOf({1, 0, 0, 0, 0}), kNow, 0, 3), IsEmpty());
}

}  // namespace
}  // namespace embrix
