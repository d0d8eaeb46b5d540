#include "records/calendar_day.h"

#include <stdlib.h>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "records/day_ledger.h"

namespace embrix {
namespace {

// The time zone of this process while it lives.
class Zone {
 public:
  explicit Zone(const char* name) {
    if (const char* before = ::getenv("TZ")) before_ = before;
    ::setenv("TZ", name, 1);
  }
  ~Zone() {
    if (before_.empty()) {
      ::unsetenv("TZ");
    } else {
      ::setenv("TZ", before_.c_str(), 1);
    }
  }

 private:
  std::string before_;
};

TEST(CalendarDayTest, TheKeyIsYearMonthAndDayInFixedPlaces) {
  EXPECT_EQ(dayKey({.year = 2026, .month = 3, .day = 2}), "2026-03-02");
  EXPECT_EQ(dayKey({.year = 812, .month = 12, .day = 31}), "0812-12-31");
  EXPECT_EQ(dayKey({.year = 12026, .month = 1, .day = 1}), "12026-01-01");
}

TEST(CalendarDayTest, WhatACalendarDoesNotTellCountsAs0) {
  EXPECT_EQ(DayLedger::dayKey(5, [](double) { return CivilDate{.year = 2026}; }), "2026-00-00");
  EXPECT_EQ(DayLedger::dayKey(5, [](double) { return CivilDate{}; }), "0000-00-00");
}

TEST(CalendarDayTest, TheCalendarIsAskedForThatMoment) {
  double asked = 0;
  EXPECT_EQ(DayLedger::dayKey(1'772'000'000.5,
                              [&](double date) {
                                asked = date;
                                return CivilDate{.year = 2026, .month = 2, .day = 25};
                              }),
            "2026-02-25");
  EXPECT_EQ(asked, 1'772'000'000.5);
}

TEST(CalendarDayTest, TheLocalDayIsThatOfTheZoneOfNow) {
  constexpr double kMarch2Midnight = 1'772'409'600;  // 2026-03-02 00:00:00 in Greenwich
  {
    const Zone zone("UTC0");
    EXPECT_EQ(dayKey(localDate(kMarch2Midnight)), "2026-03-02");
    EXPECT_EQ(dayKey(localDate(kMarch2Midnight - 0.001)), "2026-03-01");
    EXPECT_EQ(dayKey(localDate(-0.5)), "1969-12-31");
  }
  {
    const Zone zone("EAST-9");
    EXPECT_EQ(dayKey(localDate(kMarch2Midnight - 9 * 3600)), "2026-03-02");
    EXPECT_EQ(dayKey(localDate(kMarch2Midnight - 9 * 3600 - 1)), "2026-03-01");
  }
  {
    const Zone zone("WEST8");
    EXPECT_EQ(dayKey(localDate(kMarch2Midnight)), "2026-03-01");
  }
}

TEST(CalendarDayTest, ThereIsNoDayFarBeyondAllYears) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double date :
       {1e18, -1e18, 1e300, kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(localDate(date), CivilDate{}) << date;
  }
}

}  // namespace
}  // namespace embrix
