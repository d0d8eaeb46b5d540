#include "records/day_ledger.h"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using namespace std::string_view_literals;

using testing::DoubleEq;
using testing::ElementsAre;

constexpr double kNow = 1'750'000'000;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A day as frames come in, above or below a threshold of 10 W.
class Day {
 public:
  DayLedger ledger = DayLedger::fresh("2026-03-02");
  std::string day = "2026-03-02";
  double now = kNow;
  std::vector<DayLedger::Entry> entries;

  // Absent seconds: the first frame of a run.
  void frame(std::optional<double> seconds, double watts,
             std::optional<SharedText> label = SharedText("Browser")) {
    now += seconds.value_or(0);
    ledger.record({.day = day,
                   .now = now,
                   .elapsed = seconds,
                   .totalWatts = watts,
                   .warmWatts = 10,
                   .entries = entries,
                   .label = std::move(label)});
  }
};

TEST(DayLedgerTest, TheFirstFrameOfARunOnlyChecksTheDay) {
  Day day;
  day.frame({}, 50);
  EXPECT_EQ(day.ledger, DayLedger::fresh("2026-03-02"));

  day.ledger.totalWattHours = 7;
  day.day = "2026-03-03";
  day.frame({}, 50);
  EXPECT_EQ(day.ledger, DayLedger::fresh("2026-03-03"));
}

TEST(DayLedgerTest, AGapOfTwoHoursAddsThirtySecondsAtThePowerOfNow) {
  Day day;
  day.entries = {{"a", "A", 6}};
  day.frame(7200, 12);
  EXPECT_THAT(day.ledger.totalWattHours, DoubleEq(0.1));
  EXPECT_THAT(day.ledger.groupWattHours.at("a"sv), DoubleEq(0.05));
  EXPECT_EQ(day.ledger.hotSeconds, 30);
}

TEST(DayLedgerTest, AClockSetBackAddsNoEnergyAndNoHeat) {
  Day day;
  day.entries = {{"a", "A", 6}};
  day.frame(-31'536'000, 12);
  EXPECT_EQ(day.ledger.totalWattHours, 0);
  EXPECT_EQ(day.ledger.groupWattHours.at("a"sv), 0);
  EXPECT_EQ(day.ledger.hotSeconds, 0);
  EXPECT_EQ(day.ledger.peakWatts, 12);
}

TEST(DayLedgerTest, TheEnergyOfTheWholeMachineAndOfEachGroupAddsUp) {
  Day day;
  day.entries = {{"a", "A", 3}, {"b", "B", 1}};
  day.frame(2, 8);
  day.entries = {{"a", "A again", 6}};
  day.frame(4, 9);
  EXPECT_THAT(day.ledger.totalWattHours, DoubleEq((8 * 2 + 9 * 4) / 3600.0));
  EXPECT_THAT(day.ledger.groupWattHours.at("a"sv), DoubleEq((3 * 2 + 6 * 4) / 3600.0));
  EXPECT_THAT(day.ledger.groupWattHours.at("b"sv), DoubleEq(1 * 2 / 3600.0));
  EXPECT_EQ(day.ledger.groupNames.at("a"sv), "A again");
  EXPECT_EQ(day.ledger.groupNames.at("b"sv), "B");
}

TEST(DayLedgerTest, ThreeHotFramesTwoSecondsApartAreFourHotSecondsAndNoSpell) {
  Day day;
  day.frame({}, 20);
  day.frame(2, 20);
  day.frame(2, 20);
  EXPECT_EQ(day.ledger.hotSeconds, 4);
  EXPECT_EQ(day.ledger.spells, 0);
  EXPECT_EQ(day.ledger.spellSeconds, 4);
}

TEST(DayLedgerTest, PowerExactlyAtTheThresholdIsHot) {
  Day day;
  day.frame(2, 10);
  EXPECT_EQ(day.ledger.hotSeconds, 2);
  day.frame(2, 9.999);
  EXPECT_EQ(day.ledger.hotSeconds, 2);
}

TEST(DayLedgerTest, ASpellOfExactlyThirtySecondsCountsOnce) {
  Day day;
  for (int i = 0; i < 3; ++i) day.frame(10, 20);
  EXPECT_EQ(day.ledger.spells, 1);
  for (int i = 0; i < 10; ++i) day.frame(10, 20);
  EXPECT_EQ(day.ledger.spells, 1);
  EXPECT_EQ(day.ledger.longestSpellSeconds, 130);
  day.frame(2, 1);
  EXPECT_EQ(day.ledger.spellSeconds, 0);
  day.frame(30, 20);
  EXPECT_EQ(day.ledger.spells, 2);
  EXPECT_EQ(day.ledger.longestSpellSeconds, 130);
}

TEST(DayLedgerTest, JustBelowThirtySecondsIsNoSpellYetTheLongestRise) {
  Day day;
  day.frame(29.9, 20);
  day.frame(2, 1);
  EXPECT_EQ(day.ledger.spells, 0);
  EXPECT_EQ(day.ledger.longestSpellSeconds, 29.9);
  EXPECT_EQ(day.ledger.spellSeconds, 0);
  EXPECT_EQ(day.ledger.hotSeconds, 29.9);
}

TEST(DayLedgerTest, APeakEqualToTheOldOneLeavesItsTime) {
  Day day;
  day.frame(2, 20, SharedText("first"));
  day.frame(2, 20, SharedText("second"));
  EXPECT_EQ(day.ledger.peakWatts, 20);
  EXPECT_EQ(day.ledger.peakTime, kNow + 2);
  EXPECT_EQ(day.ledger.peakLabel, SharedText("first"));
}

TEST(DayLedgerTest, AHigherPeakThatNobodyCausedHasNoLabel) {
  Day day;
  day.frame(2, 20);
  ASSERT_TRUE(day.ledger.peakLabel);
  day.frame(2, 21, {});
  EXPECT_EQ(day.ledger.peakWatts, 21);
  EXPECT_EQ(day.ledger.peakTime, kNow + 4);
  EXPECT_EQ(day.ledger.peakLabel, std::nullopt);
}

TEST(DayLedgerTest, TheFirstFrameOfADayCountsInTheNewDay) {
  Day day;
  day.entries = {{"a", "A", 6}};
  day.frame(10, 20);
  day.day = "2026-03-03";
  day.frame(10, 36);
  EXPECT_EQ(day.ledger.day, "2026-03-03");
  EXPECT_THAT(day.ledger.totalWattHours, DoubleEq(0.1));
  EXPECT_EQ(day.ledger.hotSeconds, 10);
  EXPECT_EQ(day.ledger.spellSeconds, 10);
  EXPECT_EQ(day.ledger.peakWatts, 36);
}

TEST(DayLedgerTest, AnEarlierDayBeginsAnewToo) {
  Day day;
  day.frame(10, 20);
  day.day = "2025-03-02";
  day.frame({}, 20);
  EXPECT_EQ(day.ledger, DayLedger::fresh("2025-03-02"));
}

TEST(DayLedgerTest, ARestartGoesOnWithASpell) {
  Day day;
  day.ledger.spellSeconds = 29;
  day.frame(1, 20);
  EXPECT_EQ(day.ledger.spells, 1);
}

TEST(DayLedgerTest, WhatIsNotFiniteAddsNothing) {
  Day day;
  day.entries = {{"a", "A", kNaN}, {"b", "B", kInfinity}, {"c", "C", 3.6}};
  day.frame(1, kNaN);
  day.frame(kNaN, kInfinity);
  EXPECT_EQ(day.ledger.totalWattHours, 0);
  EXPECT_EQ(day.ledger.groupWattHours.size(), 1u);
  EXPECT_THAT(day.ledger.groupWattHours.at("c"sv), DoubleEq(0.001));
  EXPECT_EQ(day.ledger.peakWatts, 0);
  EXPECT_EQ(day.ledger.peakTime, std::nullopt);
  EXPECT_EQ(day.ledger.hotSeconds, 0);
}

TEST(DayLedgerTest, TheLargestNumberOfSpellsStays) {
  Day day;
  day.ledger.spells = std::numeric_limits<std::int64_t>::max();
  day.frame(30, 20);
  EXPECT_EQ(day.ledger.spells, std::numeric_limits<std::int64_t>::max());
}

TEST(DayLedgerTest, GroupsBelowTheLeastWattsLeaveNoTrace) {
  std::vector<AppGroup> groups(3);
  groups[0].identity = {.key = "a", .name = "A", .app = {}};
  groups[0].watts = 4;
  groups[1].identity = {.key = "b", .name = "B", .app = {}};
  groups[1].watts = 0.05;
  groups[2].identity = {.key = "c", .name = "C", .app = {}};
  groups[2].watts = 0.0499;
  EXPECT_THAT(DayLedger::entriesOf(groups),
              ElementsAre(DayLedger::Entry{"a", "A", 4}, DayLedger::Entry{"b", "B", 0.05}));
}

}  // namespace
}  // namespace embrix
