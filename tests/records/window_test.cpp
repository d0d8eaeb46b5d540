// The running sums and counts against the plain walks over the window.
#include <limits>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "random_day.h"
#include "records/window_counts.h"
#include "records/window_sums.h"
#include "sample_records.h"
#include "slow_windows.h"

namespace embrix {
namespace {

using testing::DoubleNear;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double kNow = 1'750'000'000;

HistoryPoint at(double time, std::initializer_list<std::pair<std::string_view, double>> watts) {
  return {.time = time, .groupWatts = wattsOf(watts), .label = {}};
}

std::set<std::string> textsOf(const std::vector<SharedText>& keys) {
  std::set<std::string> texts;
  for (const SharedText& key : keys) texts.insert(key.string());
  EXPECT_EQ(texts.size(), keys.size());
  return texts;
}

TEST(WindowSumsTest, BeforeAnyPointThereIsNoAverage) {
  WindowSums sums(600);
  EXPECT_EQ(sums.average("a"), std::nullopt);
  sums.advance(History(10), kNow);
  EXPECT_EQ(sums.average("a"), std::nullopt);
  EXPECT_EQ(sums.points(), 0u);
}

TEST(WindowSumsTest, AveragesCountPointsWithoutTheGroupAs0) {
  History history(10);
  history.append(at(kNow, {{"a", 4}, {"b", 1}}));
  history.append(at(kNow + 2, {{"a", 2}}));
  WindowSums sums(600);
  sums.advance(history, kNow + 2);
  EXPECT_EQ(sums.average("a"), 3);
  EXPECT_EQ(sums.average("b"), 0.5);
  EXPECT_EQ(sums.average("c"), 0);
}

TEST(WindowSumsTest, PointsLeaveWithAgeAndWithTheHistory) {
  History history(3);
  WindowSums sums(10);
  for (const double time : {0.0, 4.0, 8.0, 12.0}) {
    history.append(at(kNow + time, {{"a", time}}));
    sums.advance(history, kNow + time);
  }
  EXPECT_EQ(sums.average("a"), 8);  // of 4, 8 and 12
  sums.advance(history, kNow + 18);
  EXPECT_EQ(sums.average("a"), 10);  // 8 is exactly as old as the window
  sums.advance(history, kNow + 30);
  EXPECT_EQ(sums.average("a"), std::nullopt);
}

TEST(WindowSumsTest, AClockSetBackBringsOlderPointsIn) {
  History history(10);
  WindowSums sums(10);
  for (const double time : {0.0, 100.0, 200.0}) {
    history.append(at(kNow + time, {{"a", time}}));
    sums.advance(history, kNow + time);
  }
  EXPECT_EQ(sums.points(), 1u);
  sums.advance(history, kNow + 105);
  EXPECT_EQ(sums.points(), 2u);
  EXPECT_EQ(sums.average("a"), 150);
}

TEST(WindowSumsTest, PointsOfAClockThatWasWrongForAWhileStayOut) {
  constexpr double kYear = 31'536'000;
  History history(1000);
  WindowSums sums(600);
  const auto append = [&](double time, double watts) {
    history.append(at(time, {{"a", watts}}));
    sums.advance(history, time);
  };
  append(kNow, 1);
  append(kNow - kYear, 50);  // a year back, where the newer point counts as well
  EXPECT_EQ(sums.average("a"), 25.5);
  append(kNow + 4, 2);  // and right again
  EXPECT_EQ(sums.points(), 2u);
  EXPECT_EQ(sums.average("a"), 1.5);
  EXPECT_EQ(sums.average("b"), 0);
  append(kNow + 602, 4);  // the wrong one is gone, and so is the one before it
  EXPECT_EQ(sums.average("a"), 3);
  append(kNow + 602 + kYear, 7);  // a year ahead, where it stands alone
  EXPECT_EQ(sums.average("a"), 7);
  append(kNow + 604, 5);  // and right again: with 2, 4 and what is still to come
  EXPECT_EQ(sums.average("a"), 4.5);
}

TEST(WindowSumsTest, AHugeValueThatPassesLeavesNothingBehind) {
  History history(100);
  WindowSums sums(10);
  double time = kNow;
  const auto append = [&](double watts) {
    history.append(at(time += 2, {{"a", watts}, {"b", 0.1}}));
    sums.advance(history, time);
  };
  append(0.1);
  append(1e300);
  append(1e17);
  for (int i = 0; i < 6; ++i) append(0.1);
  EXPECT_THAT(*sums.average("a"), DoubleNear(0.1, 1e-12));
  append(std::numeric_limits<double>::max());
  append(std::numeric_limits<double>::max());
  for (int i = 0; i < 6; ++i) append(0.1);
  EXPECT_THAT(*sums.average("a"), DoubleNear(0.1, 1e-12));
}

// One frame in two seconds, with a group that never rests.
TEST(WindowSumsTest, SumsDoNotDriftOverTenDays) {
  RandomDay day(1);
  History history(40);
  WindowSums sums(60);
  double time = kNow;
  for (int i = 0; i < 10 * 43'200; ++i) {
    history.append(at(time += 2, {{"a", day.between(0.05, i % 1000 < 10 ? 500 : 5)}}));
    sums.advance(history, time);
    if (i % 10'007 != 0) continue;
    const double plain = *SlowWindows::average(history, "a", 60, time);
    ASSERT_THAT(*sums.average("a"), DoubleNear(plain, 1e-10 * plain)) << i;
  }
}

TEST(WindowCountsTest, AGroupMayDipInOnePointOutOfFive) {
  History history(100);
  WindowCounts counts;
  for (int i = 0; i < 10; ++i) {
    history.append(
        at(kNow + 2 * i,
           {{"steady", 3}, {"dips", i % 5 == 0 ? 0.1 : 9.0}, {"dips more", i < 3 ? 0.1 : 9.0}}));
  }
  counts.advance(history, kNow + 20, 300, 3);
  EXPECT_EQ(counts.points(), 10u);
  EXPECT_THAT(textsOf(counts.keysWithShare(0.8)), UnorderedElementsAre("steady", "dips"));
}

TEST(WindowCountsTest, AGroupThatIsMissingHasNoWatts) {
  History history(100);
  WindowCounts counts;
  for (int i = 0; i < 10; ++i) {
    if (i < 7) {
      history.append(at(kNow + 2 * i, {{"a", 9}, {"b", 1}}));
    } else {
      history.append(at(kNow + 2 * i, {{"b", 1}}));
    }
  }
  counts.advance(history, kNow + 20, 300, 3);
  EXPECT_THAT(counts.keysWithShare(0.8), IsEmpty());
  EXPECT_THAT(textsOf(counts.keysWithShare(0.7)), UnorderedElementsAre("a"));
}

TEST(WindowCountsTest, AThresholdOf0OrLessIsPassedByEveryGroupInTheWindow) {
  for (const double threshold : {0.0, -1.0}) {
    History history(100);
    WindowCounts counts;
    history.append(at(kNow - 1000, {{"too old", 5}}));
    history.append(at(kNow, {{"a", 5}}));
    history.append(at(kNow + 2, {}));
    history.append(at(kNow + 4, {}));
    counts.advance(history, kNow + 4, 300, threshold);
    EXPECT_THAT(textsOf(counts.keysWithShare(0.8)), UnorderedElementsAre("a"));
  }
}

TEST(WindowCountsTest, AnEmptyWindowHasNoGroups) {
  WindowCounts counts;
  counts.advance(History(10), kNow, 300, 3);
  EXPECT_THAT(counts.keysWithShare(0.8), IsEmpty());
  EXPECT_THAT(counts.keysWithShare(0), IsEmpty());
}

TEST(WindowCountsTest, AnotherThresholdCountsThePointsThatAreThereAnew) {
  History history(100);
  WindowCounts counts;
  for (int i = 0; i < 10; ++i) history.append(at(kNow + 2 * i, {{"a", 4}, {"b", 8}}));
  counts.advance(history, kNow + 20, 300, 5);
  EXPECT_THAT(textsOf(counts.keysWithShare(0.8)), UnorderedElementsAre("b"));
  counts.advance(history, kNow + 20, 300, 3);
  EXPECT_THAT(textsOf(counts.keysWithShare(0.8)), UnorderedElementsAre("a", "b"));
  counts.advance(history, kNow + 20, 300, 8.5);
  EXPECT_THAT(counts.keysWithShare(0.8), IsEmpty());
}

TEST(WindowCountsTest, AnotherLengthTakesInMoreOrFewerPoints) {
  History history(100);
  WindowCounts counts;
  for (int i = 0; i < 10; ++i) history.append(at(kNow + 10 * i, {{"a", i < 5 ? 9.0 : 1.0}}));
  counts.advance(history, kNow + 90, 20, 3);
  EXPECT_EQ(counts.points(), 3u);
  counts.advance(history, kNow + 90, 1000, 3);
  EXPECT_EQ(counts.points(), 10u);
  EXPECT_THAT(textsOf(counts.keysWithShare(0.5)), UnorderedElementsAre("a"));
  counts.advance(history, kNow + 90, 0, 3);
  EXPECT_EQ(counts.points(), 1u);
}

TEST(WindowTest, AHistoryThatWasFilledBeforeIsTakenInWhole) {
  History history(5);
  for (int i = 0; i < 50; ++i) history.append(at(kNow + i, {{"a", 1.0 * i}}));
  WindowSums sums(600);
  sums.advance(history, kNow + 49);
  EXPECT_EQ(sums.average("a"), 47);
  for (int i = 50; i < 100; ++i) history.append(at(kNow + i, {{"a", 1.0 * i}}));  // unseen
  sums.advance(history, kNow + 99);
  EXPECT_EQ(sums.average("a"), 97);
}

TEST(WindowTest, SumsAndCountsAreThoseOfPlainWalksOnThousandsOfRandomDays) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    RandomDay day(seed);
    const double sumSeconds = day.oneOf({0.0, 10.0, 60.0, 600.0});
    double seconds = 30;
    double threshold = 3;
    History history(static_cast<std::size_t>(day.oneOf({1, 5, 20, 1000})));
    WindowSums sums(sumSeconds);
    WindowCounts counts;
    const int frames = 20 + day.below(40);
    for (int frame = 0; frame < frames; ++frame) {
      day.step();
      std::vector<SharedMap<double>::Entry> watts;
      for (const auto& group : day.groups()) watts.push_back({group.key, group.watts});
      const bool isSkipped = day.once(50);  // no point, and no look, but the time goes by
      if (isSkipped) continue;
      history.append(
          {.time = day.now, .groupWatts = SharedMap<double>(std::move(watts)), .label = {}});
      if (day.once(25)) continue;  // a point that is seen with the next
      if (day.once(20)) seconds = day.oneOf({0.0, 10.0, 30.0, 300.0, 1e9, -5.0, kInfinity, kNaN});
      if (day.once(20)) threshold = day.oneOf({3.0, 0.05, 0.0, -1.0, 50.0, kNaN});

      sums.advance(history, day.now);
      counts.advance(history, day.now, seconds, threshold);
      for (int i = 0; i < 12; i += 1 + day.below(4)) {
        const std::string key = "group " + std::to_string(i);
        const auto plain = SlowWindows::average(history, key, sumSeconds, day.now);
        const auto fast = sums.average(key);
        ASSERT_EQ(fast.has_value(), plain.has_value()) << seed << " " << frame;
        if (plain) {
          ASSERT_THAT(*fast, DoubleNear(*plain, 1e-9 * *plain)) << seed << " " << frame;
        }
      }
      ASSERT_EQ(counts.points(), SlowWindows::window(history, seconds, day.now).size());
      ASSERT_EQ(textsOf(counts.keysWithShare(0.8)),
                SlowWindows::keysWithShare(history, day.now, seconds, threshold, 0.8))
          << seed << " " << frame << " " << seconds << " " << threshold;
    }
  }
}

}  // namespace
}  // namespace embrix
