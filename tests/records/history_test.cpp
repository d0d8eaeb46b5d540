#include "records/history.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "sample_records.h"

namespace embrix {
namespace {

constexpr double kNow = 1'750'000'000;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

HistoryPoint at(double time, double watts = 1) {
  return {.time = time, .groupWatts = wattsOf({{"a", watts}}), .label = {}};
}

History historyAt(std::initializer_list<double> times) {
  History history(1800);
  for (const double time : times) history.append(at(time));
  return history;
}

TEST(HistoryPointTest, TotalIsTheLargerOfTheSystemAndTheSumOfTheGroups) {
  HistoryPoint point{.groupWatts = wattsOf({{"a", 2}, {"b", 3}}), .label = {}};
  EXPECT_EQ(point.totalWatts(), 5);
  point.systemWatts = 4.5;
  EXPECT_EQ(point.totalWatts(), 5);
  point.systemWatts = 7;
  EXPECT_EQ(point.totalWatts(), 7);
  EXPECT_EQ(barePoint().totalWatts(), 0);
}

TEST(HistoryPointTest, AGroupThatIsNotThereHasNoWatts) {
  EXPECT_EQ(fullPoint().watts("named:Vite"), 0.05);
  EXPECT_EQ(fullPoint().watts("other"), 0);
}

TEST(HistoryTest, The1801stPointRemovesTheFirst) {
  History history(1800);
  for (int i = 0; i < 1800; ++i) history.append(at(kNow + i));
  EXPECT_EQ(history.points().front().time, kNow);
  EXPECT_EQ(history.removed(), 0u);
  history.append(at(kNow + 1800));
  EXPECT_EQ(history.points().size(), 1800u);
  EXPECT_EQ(history.points().front().time, kNow + 1);
  EXPECT_EQ(history.points().back().time, kNow + 1800);
  EXPECT_EQ(history.removed(), 1u);
}

TEST(HistoryTest, TheOldestPointsGoForAsLongAsItRuns) {
  for (const std::size_t capacity : {1u, 2u, 7u, 32u, 33u, 100u}) {
    History history(capacity);
    for (int i = 0; i < 1000; ++i) {
      history.append(at(kNow + i));
      const auto points = history.points();
      ASSERT_EQ(points.size(), std::min<std::size_t>(capacity, static_cast<std::size_t>(i) + 1));
      ASSERT_EQ(history.removed() + points.size(), static_cast<std::uint64_t>(i) + 1);
      ASSERT_EQ(points.front().time, kNow + static_cast<double>(history.removed()));
      ASSERT_EQ(points.back().time, kNow + i);
      ASSERT_EQ(history.snapshot().size(), points.size());
    }
  }
}

TEST(HistoryTest, ACapacityOfNoneIsOne) {
  History history(0);
  history.append(at(kNow));
  history.append(at(kNow + 1));
  ASSERT_EQ(history.points().size(), 1u);
  EXPECT_EQ(history.points().front().time, kNow + 1);
}

TEST(HistoryTest, AWindowOverPointsAllOlderIsEmpty) {
  const History history = historyAt({kNow - 900, kNow - 700, kNow - 601});
  EXPECT_TRUE(history.window(600, kNow).empty());
  EXPECT_EQ(history.average("a", 600, kNow), std::nullopt);
  EXPECT_EQ(history.average("other", 600, kNow), std::nullopt);
  EXPECT_TRUE(History(1800).window(600, kNow).empty());
}

TEST(HistoryTest, APointExactlyAsOldAsTheWindowBelongsToIt) {
  const History history = historyAt({kNow - 600.001, kNow - 600, kNow - 599});
  EXPECT_EQ(history.window(600, kNow).size(), 2u);
  EXPECT_EQ(history.window(600, kNow).front().time, kNow - 600);
}

TEST(HistoryTest, TheWindowRunsFromItsFirstPointToTheEndWhateverTheTimesBehindIt) {
  const History history = historyAt({kNow - 900, kNow - 10, kNow - 800, kNow - 5});
  EXPECT_EQ(history.window(600, kNow).size(), 3u);
}

TEST(HistoryTest, AnAverageCountsPointsWithoutTheGroupAs0) {
  History history(1800);
  history.append(at(kNow - 700, 100));  // too old
  history.append(at(kNow - 6, 4));
  history.append({.time = kNow - 4, .groupWatts = wattsOf({{"b", 9}}), .label = {}});
  history.append(at(kNow - 2, 2));
  EXPECT_EQ(history.average("a", 600, kNow), 2);
  EXPECT_EQ(history.average("b", 600, kNow), 3);
}

TEST(HistoryTest, TheAverageOfAGroupThatIsInNoPointIs0) {
  EXPECT_EQ(historyAt({kNow}).average("other", 600, kNow), 0);
}

TEST(HistoryTest, AnAgeThatIsNoNumberHasNoWindow) {
  const History history = historyAt({kNow});
  EXPECT_TRUE(history.window(kNaN, kNow).empty());
  EXPECT_TRUE(history.window(600, kInfinity).empty());
  EXPECT_EQ(history.window(kInfinity, kNow).size(), 1u);
}

TEST(HistoryTest, WhatIsNotFiniteWasNotMeasured) {
  History history(10);
  history.append({.time = kNow,
                  .systemWatts = kNaN,
                  .groupWatts = wattsOf({{"a", 1}, {"b", kInfinity}, {"c", kNaN}, {"d", 2}}),
                  .temperature = -kInfinity,
                  .cpuPercent = 3,
                  .label = {}});
  const HistoryPoint expected{
      .time = kNow, .groupWatts = wattsOf({{"a", 1}, {"d", 2}}), .cpuPercent = 3, .label = {}};
  EXPECT_EQ(history.points().front(), expected);
}

TEST(HistoryTest, HistoriesAreEqualByTheirPointsAndCapacity) {
  EXPECT_EQ(historyAt({1, 2}), historyAt({1, 2}));
  EXPECT_FALSE(historyAt({1, 2}) == historyAt({1, 3}));
  EXPECT_FALSE(historyAt({1, 2}) == historyAt({1}));
  EXPECT_FALSE(History(5) == History(6));
}

}  // namespace
}  // namespace embrix
