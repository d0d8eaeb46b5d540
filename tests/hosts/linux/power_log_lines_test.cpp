#include "hosts/linux/power_log_lines.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "hosts/linux/power_log_source.h"
#include "records/overnight_log.h"

namespace embrix {
namespace {

// 2026-03-01 22:00:00 UTC.
constexpr std::int64_t kEvening = 1'772'402'400;

JournalEntry kernel(std::int64_t seconds, const std::string& message) {
  return {(kEvening + seconds) * 1'000'000, "", message};
}
JournalEntry begins(std::int64_t seconds) {
  return {(kEvening + seconds) * 1'000'000, std::string(kSleepStartID),
          "Performing sleep operation 'suspend'..."};
}
JournalEntry ends(std::int64_t seconds) {
  return {(kEvening + seconds) * 1'000'000, std::string(kSleepStopID),
          "System returned from sleep operation 'suspend'."};
}

const std::string kSleepLine =
    "2026-03-01 22:00:00 +0000 Sleep               \tEntering Sleep state due to 'Performing sleep "
    "operation 'suspend'...'\n";
const std::string kWakeLine = "2026-03-02 06:00:00 +0000 Wake                \tWake from Sleep\n";
constexpr std::int64_t kNight = 8 * 3600;

TEST(PowerLogLinesTest, EntriesBecomeTheLogsLines) {
  struct Case {
    const char* label;
    std::vector<JournalEntry> entries;
    std::string expected;
  };
  const Case cases[] = {
      {"nothing", {}, ""},
      {"the service manager alone", {begins(0), ends(kNight)}, kSleepLine + kWakeLine},
      {"both voices tell of one sleep",
       {begins(0), kernel(1, "PM: suspend entry (deep)"), kernel(kNight, "PM: suspend exit"),
        ends(kNight + 1)},
       kSleepLine + kWakeLine},
      {"an entry that the journal only received after the wake",
       {begins(0), kernel(kNight - 1, "PM: suspend entry (s2idle)"),
        kernel(kNight, "PM: suspend exit"), ends(kNight)},
       kSleepLine + kWakeLine},
      {"the kernel alone",
       {kernel(0, "PM: suspend entry (s2idle)"), kernel(kNight, "PM: suspend exit")},
       "2026-03-01 22:00:00 +0000 Sleep               \tEntering Sleep state due to 'PM: suspend "
       "entry (s2idle)'\n" +
           kWakeLine},
      {"hibernation by newer and older kernels",
       {kernel(0, "PM: hibernation: hibernation entry"),
        kernel(60, "PM: hibernation: hibernation exit"), kernel(120, "PM: hibernation entry"),
        kernel(180, "PM: hibernation exit")},
       "2026-03-01 22:00:00 +0000 Sleep               \tEntering Sleep state due to 'PM: "
       "hibernation: hibernation entry'\n"
       "2026-03-01 22:01:00 +0000 Wake                \tWake from Sleep\n"
       "2026-03-01 22:02:00 +0000 Sleep               \tEntering Sleep state due to 'PM: "
       "hibernation entry'\n"
       "2026-03-01 22:03:00 +0000 Wake                \tWake from Sleep\n"},
      {"awake for a moment, to hibernate",
       {begins(0), kernel(1, "PM: suspend entry (deep)"), kernel(3600, "PM: suspend exit"),
        kernel(3607, "PM: hibernation: hibernation entry"),
        kernel(kNight, "PM: hibernation: hibernation exit"), ends(kNight + 2)},
       kSleepLine +
           "2026-03-01 23:00:00 +0000 DarkWake            \tDarkWake from Sleep 7 secs\n"
           "2026-03-01 23:00:07 +0000 Sleep               \tEntering Sleep state due to 'PM: "
           "hibernation: hibernation entry'\n" +
           kWakeLine},
      {"a clock that was set back while awake for a moment",
       {begins(0), kernel(3600, "PM: suspend exit"), kernel(60, "PM: hibernation entry"),
        ends(kNight)},
       kSleepLine +
           "2026-03-01 23:00:00 +0000 DarkWake            \tDarkWake from Sleep\n"
           "2026-03-01 22:01:00 +0000 Sleep               \tEntering Sleep state due to 'PM: "
           "hibernation entry'\n" +
           kWakeLine},
      {"two sleeps of the kernel's own, a minute apart, are two nights",
       {kernel(0, "PM: suspend entry (deep)"), kernel(60, "PM: suspend exit"),
        kernel(120, "PM: suspend entry (deep)")},
       "2026-03-01 22:00:00 +0000 Sleep               \tEntering Sleep state due to 'PM: suspend "
       "entry (deep)'\n"
       "2026-03-01 22:01:00 +0000 Wake                \tWake from Sleep\n"
       "2026-03-01 22:02:00 +0000 Sleep               \tEntering Sleep state due to 'PM: suspend "
       "entry (deep)'\n"},
      {"a journal that starts in the middle", {ends(10), kernel(20, "PM: suspend exit")}, ""},
      {"other words of the kernel's",
       {kernel(0, "PM: suspend devices took 0.2 seconds"), kernel(1, "PM: Some devices failed"),
        kernel(2, "suspend entry"), kernel(3, "")},
       ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(powerLogLines(c.entries), c.expected) << c.label;
  }
}

TEST(PowerLogLinesTest, HostileTextsKeepTheLinesForm) {
  const std::string text = powerLogLines(
      {{kEvening * 1'000'000, std::string(kSleepStartID), "a\tb\nc\x1b" + std::string(9000, 'x')}});
  EXPECT_EQ(text.find('\n'), text.size() - 1);
  EXPECT_EQ(text.find('\t'), text.rfind('\t'));
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  EXPECT_LT(text.size(), 400u);
}

TEST(PowerLogLinesTest, TimesBeyondTheLinesFormAreLeftOut) {
  for (const std::int64_t microseconds :
       {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(),
        std::int64_t{253'402'300'800'000'000}}) {
    EXPECT_EQ(powerLogLines({{microseconds, std::string(kSleepStartID), "x"}}), "") << microseconds;
  }
}

TEST(PowerLogSourceTest, TheLogsReaderFindsTheNight) {
  LinuxPowerLogSource source([] {
    return std::vector<JournalEntry>{begins(0), kernel(3600, "PM: suspend exit"),
                                     kernel(3607, "PM: hibernation entry"),
                                     kernel(kNight, "PM: hibernation exit"), ends(kNight + 1)};
  });
  const auto night = OvernightLog::parse(source.read());
  ASSERT_TRUE(night);
  EXPECT_EQ(night->sleptAt, static_cast<double>(kEvening));
  EXPECT_EQ(night->wokeAt, static_cast<double>(kEvening + kNight));
  EXPECT_EQ(night->darkWakes, 1);
  EXPECT_EQ(night->awakeSeconds, 7);
  EXPECT_EQ(night->chargeAtSleep, std::nullopt);
  EXPECT_EQ(night->chargeAtWake, std::nullopt);
  ASSERT_EQ(night->causes.size(), 1u);
  EXPECT_EQ(night->causes[0].name, "The system");
  EXPECT_TRUE(night->requesters.empty());
}

TEST(PowerLogSourceTest, WithoutAJournalTheLogIsEmpty) {
  EXPECT_EQ(LinuxPowerLogSource([] { return std::vector<JournalEntry>(); }).read(), "");
  EXPECT_EQ(LinuxPowerLogSource("/nowhere/at/all").read(), "");
}

}  // namespace
}  // namespace embrix
