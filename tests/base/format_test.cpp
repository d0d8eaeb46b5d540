#include "base/format.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace embrix {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kDay = 86400;
constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

template <typename Input>
struct Case {
  Input input;
  const char* expected;
};

TEST(FormatTest, MemoryIsInBinaryUnits) {
  const Case<std::uint64_t> cases[] = {
      {0, "0 MB"},
      {524287, "0 MB"},
      {1048576, "1 MB"},
      {536870912, "512 MB"},
      {1073741824, "1.0 GB"},
      {1610612736, "1.5 GB"},
      {17179869184, "16.0 GB"},
      {UINT64_MAX, "17179869184.0 GB"},
  };
  for (const auto& [input, expected] : cases) EXPECT_EQ(Format::memory(input), expected) << input;
}

TEST(FormatTest, MemoryJustBelowAGigabyteRoundsUpInMegabytes) {
  EXPECT_EQ(Format::memory(1073741823), "1024 MB");
}

TEST(FormatTest, ShortMemoryShowsTenthsOfAGigabyteFromOneTenthUp) {
  const Case<std::uint64_t> cases[] = {
      {0, "1 MB"},
      {1, "1 MB"},
      {1572864, "2 MB"},
      {104857600, "100 MB"},
      {107374182, "102 MB"},
      {107374183, "0.1 GB"},
      {1073741824, "1.0 GB"},
      {UINT64_MAX, "17179869184.0 GB"},
  };
  for (const auto& [input, expected] : cases) {
    EXPECT_EQ(Format::memoryShort(input), expected) << input;
  }
}

TEST(FormatTest, DiskIsInDecimalUnits) {
  const Case<std::int64_t> cases[] = {
      {0, "0 MB"},
      {999000000, "999 MB"},
      {999999999, "1000 MB"},
      {1000000000, "1.0 GB"},
      {9960000000, "10.0 GB"},
      {9999999999, "10.0 GB"},
      {10000000000, "10 GB"},
      {999600000000, "1000 GB"},
      {kLargest, "9223372037 GB"},
      {kSmallest, "-9223372036855 MB"},
  };
  for (const auto& [input, expected] : cases) EXPECT_EQ(Format::disk(input), expected) << input;
}

TEST(FormatTest, MinutesBecomeHoursAndDays) {
  const Case<std::int64_t> cases[] = {
      {0, "0m"},
      {59, "59m"},
      {60, "1h 0m"},
      {2879, "47h 59m"},
      {2880, "2d 0h"},
      {2939, "2d 0h"},
      {2940, "2d 1h"},
      {4319, "2d 23h"},
      {-5, "-5m"},
      {kLargest, "6405119470038038d 18h"},
      {kSmallest, "-9223372036854775808m"},
  };
  for (const auto& [input, expected] : cases) {
    EXPECT_EQ(Format::durationMinutes(input), expected) << input;
  }
}

TEST(FormatTest, SecondsBelowAMinuteAreShownAsSuch) {
  const Case<double> cases[] = {
      {0, "0s"},
      {0.9, "0s"},
      {59.9, "59s"},
      {60, "1m"},
      {119.9, "1m"},
      {3600, "1h 0m"},
      {-0.5, "0s"},
      {-5.9, "-5s"},
      {kNoNumber, "0s"},
      {172800, "2d 0h"},
      {kInfinity, "6405119470038038d 1h"},
      {-kInfinity, "-9223372036854774784s"},
  };
  for (const auto& [input, expected] : cases) {
    EXPECT_EQ(Format::durationSeconds(input), expected) << input;
  }
}

TEST(FormatTest, AgeIsInWords) {
  const Case<double> cases[] = {
      {59, "just now"},
      {60, "1 min"},
      {3599, "59 min"},
      {3600, "1 hour"},
      {7199, "1 hour"},
      {7200, "2 hours"},
      {-1, "just now"},
      {-90000, "just now"},
      {47 * 3600, "47 hours"},
      {2 * kDay - 1, "47 hours"},
      {2 * kDay, "2 days"},
      {kNoNumber, "just now"},
      {kInfinity, "6405119470038038 days"},
      {-kInfinity, "just now"},
  };
  for (const auto& [input, expected] : cases) EXPECT_EQ(Format::age(input), expected) << input;
}

TEST(FormatTest, ShortAgeIsAtLeastAMinute) {
  const Case<double> cases[] = {
      {10, "1m"},
      {-100, "1m"},
      {119, "1m"},
      {120, "2m"},
      {3599, "59m"},
      {3600, "1h"},
      {2 * kDay - 1, "47h"},
      {2 * kDay, "2 days"},
      {kNoNumber, "1m"},
      {kInfinity, "6405119470038038 days"},
      {-kInfinity, "1m"},
  };
  for (const auto& [input, expected] : cases) EXPECT_EQ(Format::shortAge(input), expected) << input;
}

TEST(FormatTest, LastUseIsToldInDaysWeeksAndMonths) {
  const Case<double> cases[] = {
      {-kDay, "used today"},
      {0, "used today"},
      {kDay - 1, "used today"},
      {kDay, "used yesterday"},
      {2 * kDay, "used 2 days ago"},
      {13.9 * kDay, "used 13 days ago"},
      {14 * kDay, "used 2 weeks ago"},
      {59 * kDay, "used 8 weeks ago"},
      {60 * kDay, "used 2 months ago"},
      {364.9 * kDay, "used 12 months ago"},
      {365 * kDay, "used over a year ago"},
      {kInfinity, "used over a year ago"},
      {kNoNumber, "used today"},
  };
  for (const auto& [input, expected] : cases) {
    EXPECT_EQ(Format::lastUsed(input, false), expected) << input;
  }
}

TEST(FormatTest, WhatWasOnlyAddedSaysSo) {
  EXPECT_EQ(Format::lastUsed(0, true), "added today");
  EXPECT_EQ(Format::lastUsed(kDay, true), "added yesterday");
  EXPECT_EQ(Format::lastUsed(5 * kDay, true), "added 5 days ago");
  EXPECT_EQ(Format::lastUsed(21 * kDay, true), "added 3 weeks ago");
  EXPECT_EQ(Format::lastUsed(90 * kDay, true), "added 3 months ago");
  EXPECT_EQ(Format::lastUsed(900 * kDay, true), "added over a year ago");
}

TEST(FormatTest, ShortNameIsTheLastPieceOfADottedName) {
  const Case<std::string> cases[] = {
      {"com.apple.WebKit.WebContent", "WebContent"},
      {"node.js", "node.js"},
      {"Google Chrome Helper", "Google Chrome Helper"},
      {"Visual Studio Code.Helper", "Visual Studio Code.Helper"},
      {"a.b.c", "a.b.c"},
      {"plainname", "plainname"},
      {"com.example.Agent.", "Agent"},
      {"com.example.日本電気", "日本電気"},
      {"com.example.日本", "com.example.日本"},
      {"....", "...."},
      {"", ""},
      {"com.example.\xff\xfe", "com.example.\xff\xfe"},
  };
  for (const auto& [input, expected] : cases) EXPECT_EQ(Format::shortName(input), expected);
}

TEST(FormatTest, PortsShowTheFirstAndCountTheOthers) {
  EXPECT_EQ(Format::ports({}), "no port");
  EXPECT_EQ(Format::ports({3000}), ":3000");
  EXPECT_EQ(Format::ports({3000, 3001}), ":3000 +1");
  EXPECT_EQ(Format::ports({3000, 3001, 9229}), ":3000 +2");
}

class CommaPoint : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
};

TEST(FormatTest, TheDecimalPointDoesNotFollowTheLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale(), new CommaPoint));
  const std::string memory = Format::memory(1610612736);
  std::locale::global(before);
  EXPECT_EQ(memory, "1.5 GB");
}

TEST(FormatTest, AgesOfAnySizeFallIntoTheirWords) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 20000; ++round) {
    const double seconds = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                                      static_cast<int>(random() % 1000) - 500);
    if (seconds >= 2 * kDay) {
      EXPECT_TRUE(Format::age(seconds).ends_with(" days")) << seconds;
      EXPECT_EQ(Format::age(seconds), Format::shortAge(seconds)) << seconds;
      EXPECT_TRUE(Format::durationSeconds(seconds).ends_with("h")) << seconds;
    } else if (seconds < 60) {
      EXPECT_EQ(Format::age(seconds), "just now") << seconds;
      EXPECT_EQ(Format::shortAge(seconds), "1m") << seconds;
      EXPECT_TRUE(Format::durationSeconds(seconds).ends_with("s")) << seconds;
    }
  }
}

}  // namespace
}  // namespace embrix
