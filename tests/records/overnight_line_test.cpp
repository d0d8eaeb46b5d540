// The grammar of one line of the power log.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "records/overnight_log.h"

namespace embrix {
namespace {

constexpr std::string_view kDate = "2026-03-02 03:14:05 +0100";
constexpr double kSeconds = 1772417645;

std::string afterDate(std::string_view rest) {
  return std::string(kDate) + std::string(rest);
}

TEST(OvernightLineTest, DateKindAndDetail) {
  const std::string line = afterDate(
      " DarkWake            \tDarkWake from Deep Idle : due to RTC/Maintenance Using BATT "
      "(Charge:84%) 45 secs");
  EXPECT_EQ(OvernightLog::line(line),
            (OvernightLog::Line{kSeconds, "DarkWake",
                                "DarkWake from Deep Idle : due to RTC/Maintenance Using BATT "
                                "(Charge:84%) 45 secs"}));
}

TEST(OvernightLineTest, WhatStandsBehindTheDate) {
  struct Case {
    std::string label;
    std::string rest;
    std::string kind;
    std::string detail;
  };
  for (const auto& [label, rest, kind, detail] : {
           Case{"one character is enough", " x", "x", ""},
           Case{"no tab, no detail", " Sleep  Entering Sleep", "Sleep  Entering Sleep", ""},
           Case{"split at the first tab only", " Sleep\ta\tb", "Sleep", "a\tb"},
           Case{"the detail stays as it is", " Sleep\t  a  ", "Sleep", "  a  "},
           Case{"an empty detail", " Sleep\t", "Sleep", ""},
           Case{"a kind of several words", " Wake Requests       \tx", "Wake Requests", "x"},
           Case{"a kind that fills its column", " com.apple.sleepservices.sessionStarted\tx",
                "com.apple.sleepservices.sessionStarted", "x"},
           Case{"a blank kind", "                     \tx", "", "x"},
           Case{"no kind", " \tx", "", "x"},
           Case{"any one character separates", "xSleep\ty", "Sleep", "y"},
           Case{"a tab can be that character", "\tSleep\ty", "Sleep", "y"},
           Case{"and a character of several bytes", "\xC3\xA9Sleep\ty", "Sleep", "y"},
           Case{"and one with a mark of its own", " \xCC\x81Sleep\ty", "Sleep", "y"},
           Case{"a kind of several bytes", " \xC3\xA9t\xC3\xA9\ty", "\xC3\xA9t\xC3\xA9", "y"},
           Case{"bytes that are no text", " \xFF\t\xFE", "\xFF", "\xFE"},
           Case{"a zero byte", std::string(" a\0b\tc", 6), std::string("a\0b", 3), "c"},
       }) {
    const std::string line = afterDate(rest);
    const auto parsed = OvernightLog::line(line);
    ASSERT_TRUE(parsed) << label;
    EXPECT_EQ(parsed->date, kSeconds) << label;
    EXPECT_EQ(parsed->kind, kind) << label;
    EXPECT_EQ(parsed->detail, detail) << label;
  }
}

TEST(OvernightLineTest, WhatIsNoLine) {
  struct Case {
    std::string label;
    std::string line;
  };
  for (const auto& [label, line] : {
           Case{"empty", ""},
           Case{"a header", "Time stamp                Domain              \tMessage"},
           Case{"a total", "Total Sleep/Wakes since boot at 2026-08-30 15:27:54 -0600 :7"},
           Case{"a date alone", afterDate("")},
           Case{"26 characters", afterDate(" ")},
           Case{"26 characters of which one has four bytes", afterDate("\xF0\x9F\x94\xA5")},
           Case{"26 characters of which one has a mark", afterDate(" \xCC\x81")},
           Case{"a mark on the last digit", afterDate("\xCC\x81 Sleep\tx")},
           Case{"a blank before", " 2026-03-02 03:14:05 +0100 Sleep\tx"},
           Case{"cut at the front", afterDate(" Sleep\tx").substr(1)},
       }) {
    EXPECT_EQ(OvernightLog::line(line), std::nullopt) << label;
  }
}

TEST(OvernightLineTest, Dates) {
  struct Case {
    std::string date;
    std::optional<double> seconds;
  };
  for (const auto& [date, seconds] : {
           Case{"1970-01-01 00:00:00 +0000", 0},
           Case{"1969-12-31 23:59:59 +0000", -1},
           Case{"2026-03-02 03:14:05 +0100", kSeconds},
           Case{"2026-03-02 03:14:05 -0100", kSeconds + 7200},
           Case{"2024-02-29 00:00:00 +0545", 1709144100},
           Case{"2000-02-29 12:00:00 -0930", 951859800},
           Case{"1900-03-01 00:00:00 +0000", -2203891200},
           Case{"0001-01-01 00:00:00 +0000", -62135596800},
           Case{"9999-12-31 23:59:59 -2359", 253402387139},
           Case{"0000-01-01 00:00:00 +0000", std::nullopt},
           Case{"2026-00-02 03:14:05 +0100", std::nullopt},
           Case{"2026-13-02 03:14:05 +0100", std::nullopt},
           Case{"2026-03-00 03:14:05 +0100", std::nullopt},
           Case{"2026-03-32 03:14:05 +0100", std::nullopt},
           Case{"2026-04-31 03:14:05 +0100", std::nullopt},
           Case{"2026-02-29 03:14:05 +0100", std::nullopt},
           Case{"1900-02-29 03:14:05 +0100", std::nullopt},
           Case{"2026-03-02 24:00:00 +0100", std::nullopt},
           Case{"2026-03-02 03:60:05 +0100", std::nullopt},
           Case{"2026-03-02 03:14:60 +0100", std::nullopt},
           Case{"2026-03-02 03:14:05 +2400", std::nullopt},
           Case{"2026-03-02 03:14:05 +0160", std::nullopt},
           Case{"2026-03-02 03:14:05  0100", std::nullopt},
           Case{"2026-03-02 03:14:05 01000", std::nullopt},
           Case{"2026-03-02 03:14:05 GMT+1", std::nullopt},
           Case{"2026/03/02 03:14:05 +0100", std::nullopt},
           Case{"2026-03-02T03:14:05 +0100", std::nullopt},
           Case{"2026-03-02\t03:14:05 +0100", std::nullopt},
           Case{"2026-3-002 03:14:05 +0100", std::nullopt},
           Case{"2026-03-02 03:14:05.5+010", std::nullopt},
           Case{"x026-03-02 03:14:05 +0100", std::nullopt},
           Case{"2026-03-02 03:14:0x +0100", std::nullopt},
           Case{"-026-03-02 03:14:05 +0100", std::nullopt},
       }) {
    const std::string line = date + " Sleep\tx";
    const auto parsed = OvernightLog::line(line);
    EXPECT_EQ(parsed ? std::optional(parsed->date) : std::nullopt, seconds) << date;
  }
}

// Every day of four centuries is a day after the one before, and no date in between is taken.
TEST(OvernightLineTest, EveryDayOfTheCalendar) {
  std::optional<double> previous;
  int days = 0;
  for (int year = 1800; year < 2200; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= 31; ++day) {
        char line[64];
        std::snprintf(line, sizeof line, "%04d-%02d-%02d 00:00:00 +0000 x", year, month, day);
        const auto parsed = OvernightLog::line(line);
        if (!parsed) continue;
        if (previous) {
          ASSERT_EQ(parsed->date, *previous + 86400) << line;
        }
        previous = parsed->date;
        days += 1;
      }
    }
  }
  EXPECT_EQ(days, 146097);
}

}  // namespace
}  // namespace embrix
