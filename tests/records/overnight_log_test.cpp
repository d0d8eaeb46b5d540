#include "records/overnight_log.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log_rows.h"

namespace embrix {
namespace {

using Tallies = std::vector<Overnight::Tally>;

// A night with one dark wake of that detail.
std::string nightWith(std::string_view darkWakeDetail) {
  return at("23:00:00", "Sleep") + at("03:00:00", "DarkWake", darkWakeDetail) +
         at("07:00:00", "Wake");
}

Overnight parsed(const std::string& text) {
  return OvernightLog::parse(text).value();
}

TEST(OvernightLogTest, TheStoryOfANight) {
  const std::string log =
      at("22:59:59", "Notification", "Display is turned off Using BATT (Charge:91%)") +
      at("23:00:00", "Sleep",
         "Entering Sleep state due to 'Clamshell Sleep':TCPKeepAlive=active Using Batt "
         "(Charge:90%) 10800 secs") +
      at("23:00:01", "Wake Requests",
         "[process=mDNSResponder request=Maintenance deltaSecs=7198] [*process=dasd "
         "request=SleepService deltaSecs=900 info=\"com.apple.dasd:501:com.apple.Safari\"]") +
      at("02:00:00", "DarkWake",
         "DarkWake from Deep Idle [CDNP] : due to RTC/Maintenance Using BATT (Charge:88%) 45 "
         "secs") +
      at("02:00:45", "Sleep", "Entering Sleep state Using Batt (Charge:88%)") +
      at("02:00:46", "Wake Requests", "[*process=dasd request=SleepService]") +
      at("03:00:00", "DarkWake",
         "DarkWake from Deep Idle [CDNP] : due to SMC.OutboxNotEmpty wifibt Using BATT "
         "(Charge:87%) 1.5 sec") +
      at("03:00:02", "Wake Requests", "[*process=powerd request=TCPKATurnOff]") +
      at("04:00:00", "DarkWake", "DarkWake : due to RTC/Maintenance Using BATT (Charge:86%)") +
      at("07:00:00", "Wake", "Wake from Deep Idle : due to lid Using BATT (Charge:84%) 20 secs");
  EXPECT_EQ(parsed(log),
            (Overnight{.sleptAt = kEvening,
                       .wokeAt = kEvening + 8 * 3600,
                       .darkWakes = 3,
                       .awakeSeconds = 46.5,
                       .chargeAtSleep = 90,
                       .chargeAtWake = 84,
                       .onPower = false,
                       .causes = {{"Scheduled maintenance", 2}, {"Wi-Fi or Bluetooth", 1}},
                       .requesters = {{"Background tasks", 2}, {"macOS power management", 1}}}));
}

TEST(OvernightLogTest, WithASingleWakeTheSpanStartsAtTheFirstLine) {
  const auto night = parsed(at("23:00:00", "Sleep") + at("07:00:00", "Wake"));
  EXPECT_EQ(night, (Overnight{.sleptAt = kEvening, .wokeAt = kEvening + 8 * 3600}));
}

TEST(OvernightLogTest, TheFirstSleepIsTheRealOne) {
  const auto night = parsed(at("23:00:00", "Sleep") + at("03:00:00", "DarkWake") +
                            at("03:01:00", "Sleep") + at("07:00:00", "Wake"));
  EXPECT_EQ(night.sleptAt, kEvening);
  EXPECT_EQ(night.darkWakes, 1);
}

TEST(OvernightLogTest, LogsWithoutANight) {
  struct Case {
    std::string label;
    std::string log;
  };
  for (const auto& [label, log] : {
           Case{"empty", ""},
           Case{"no line at all", "PM ASL data store: /var/log/powermanagement\n\n====\n"},
           Case{"no wake", at("23:00:00", "Sleep") + at("03:00:00", "DarkWake")},
           Case{"no sleep", at("23:00:00", "DarkWake") + at("07:00:00", "Wake")},
           Case{"a wake alone", at("07:00:00", "Wake")},
           Case{"sleep only behind the wake", at("07:00:00", "Wake") + at("07:30:00", "Sleep")},
           Case{"nothing between two wakes",
                at("23:00:00", "Sleep") + at("07:00:00", "Wake") + at("07:00:01", "Wake")},
           Case{"kinds of other spellings",
                at("23:00:00", "sleep") + at("23:00:01", "Sleep x") + at("07:00:00", "Wake")},
           Case{"a wake of another spelling", at("23:00:00", "Sleep") + at("07:00:00", "WAKE")},
           Case{"a clock set back", at("23:00:00", "Sleep") + at("22:00:00", "Wake")},
       }) {
    EXPECT_EQ(OvernightLog::parse(log), std::nullopt) << label;
  }
}

TEST(OvernightLogTest, HalfAnHourIsANightAndASecondLessIsANap) {
  const auto sleep = at("23:00:00", "Sleep");
  EXPECT_EQ(parsed(sleep + at("23:30:00", "Wake")).wokeAt, kEvening + 1800);
  EXPECT_EQ(OvernightLog::parse(sleep + at("23:29:59", "Wake")), std::nullopt);
}

TEST(OvernightLogTest, ANapAfterANightClearsTheRecord) {
  EXPECT_EQ(OvernightLog::parse(at("23:00:00", "Sleep") + at("07:00:00", "Wake") +
                                at("08:00:00", "Sleep") + at("08:10:00", "Wake")),
            std::nullopt);
}

TEST(OvernightLogTest, WhatCameBeforeTheWakeBeforeDoesNotCount) {
  const auto night = parsed(at("22:00:00", "Sleep", "Using AC") + at("22:10:00", "DarkWake") +
                            at("22:30:00", "Wake") + at("23:00:00", "Sleep", "Using Batt") +
                            at("07:00:00", "Wake", "Using BATT"));
  EXPECT_EQ(night, (Overnight{.sleptAt = kEvening, .wokeAt = kEvening + 8 * 3600}));
}

TEST(OvernightLogTest, WhatComesBehindTheLastWakeDoesNotCount) {
  const auto night = parsed(at("23:00:00", "Sleep") + at("07:00:00", "Wake") +
                            at("07:05:00", "DarkWake", "5 secs") +
                            at("07:06:00", "Notification", "Using AC") + at("07:10:00", "Sleep"));
  EXPECT_EQ(night, (Overnight{.sleptAt = kEvening, .wokeAt = kEvening + 8 * 3600}));
}

TEST(OvernightLogTest, LinesDatedBeforeTheSleepAreLeftOutWhereverTheyStand) {
  const std::string early = at("22:59:59", "DarkWake", "due to usb 9 secs") +
                            at("22:59:59", "Wake Requests", "[*process=dasd ]") +
                            at("22:59:59", "Assertions", "Using AC");
  for (const auto& log : {early + at("23:00:00", "Sleep") + at("07:00:00", "Wake"),
                          at("23:00:00", "Sleep") + early + at("07:00:00", "Wake")}) {
    EXPECT_EQ(parsed(log), (Overnight{.sleptAt = kEvening, .wokeAt = kEvening + 8 * 3600}));
  }
}

TEST(OvernightLogTest, LinesOfTheSecondOfTheSleepCountAlsoBeforeIt) {
  const auto night = parsed(at("23:00:00", "DarkWake", "due to usb 9 secs") +
                            at("23:00:00", "Wake Requests", "[*process=dasd ]") +
                            at("23:00:00", "Assertions", "Using AC") + at("23:00:00", "Sleep") +
                            at("07:00:00", "Wake"));
  EXPECT_EQ(night.darkWakes, 1);
  EXPECT_EQ(night.awakeSeconds, 9);
  EXPECT_EQ(night.requesters, (Tallies{{"Background tasks", 1}}));
  EXPECT_TRUE(night.onPower);
}

TEST(OvernightLogTest, OnPowerAtAnyTimeOrAtTheEnd) {
  struct Case {
    std::string label;
    std::string sleep;
    std::string between;
    std::string wake;
    bool onPower;
  };
  for (const auto& [label, sleep, between, wake, onPower] : {
           Case{"never", "Using Batt", "Using BATT", "Using BATT", false},
           Case{"at the start", "Using AC", "Using BATT", "Using BATT", true},
           Case{"in between", "Using Batt", "Summary- Using AC(Charge: 78)", "Using BATT", true},
           Case{"at the end", "Using Batt", "", "Using AC (Charge:79%)", true},
           Case{"in other letters", "using ac", "Using Ac", "USING AC", false},
       }) {
    const auto night = parsed(at("23:00:00", "Sleep", sleep) + at("23:10:00", "", between) +
                              at("07:00:00", "Wake", wake));
    EXPECT_EQ(night.onPower, onPower) << label;
  }
}

TEST(OvernightLogTest, SecondsAwakeAreReadFromTheEndOfADarkWake) {
  struct Case {
    std::string detail;
    double seconds;
  };
  for (const auto& [detail, seconds] : {
           Case{"due to RTC Using BATT (Charge:84%) 45 secs", 45},
           Case{"due to RTC 1.5 sec", 1.5},
           Case{"45 secs", 45},
           Case{"45   secs  \t  ", 45},
           Case{" \t 45 secs", 45},
           Case{"45 seconds", 45},
           Case{"0.1 secs", 0.1},
           Case{".5 secs", 0.5},
           Case{"5. secs", 5},
           Case{"007 secs", 7},
           Case{"1.23456789 secs", 1.234567},
           Case{"123456789 secs", 123456789},
           Case{"due to RTC 45", 0},
           Case{"secs", 0},
           Case{" secs ", 0},
           Case{"", 0},
           Case{"45\tsecs", 0},    // a tab is part of a piece
           Case{"45 \tsecs", 0},   // the last piece begins with a tab
           Case{"x\t45 secs", 0},  // the piece before is "x\t45"
           Case{"45 Secs", 0},
           Case{"45 secs (100 ms)", 0},
           Case{"45secs", 0},
           Case{". secs", 0},
           Case{"4.5.6 secs", 0},
           Case{"4,5 secs", 0},
           Case{"-45 secs", 0},
           Case{"+45 secs", 0},
           Case{"1e3 secs", 0},
           Case{"0x10 secs", 0},
           Case{"inf secs", 0},
           Case{"nan secs", 0},
           Case{"many secs", 0},
           Case{"1234567890 secs", 0},
           Case{"99999999999999999999999999999999 secs", 0},
           Case{"\xD9\xA3 secs", 0},  // the Arabic digit three
       }) {
    const auto night = parsed(nightWith(detail));
    EXPECT_EQ(night.darkWakes, 1) << detail;
    EXPECT_EQ(night.awakeSeconds, seconds) << detail;
  }
}

TEST(OvernightLogTest, TheChargeIsTheNumberRightBehindTheColon) {
  struct Case {
    std::string detail;
    std::optional<int> charge;
  };
  for (const auto& [detail, charge] : {
           Case{"Using BATT (Charge:84%)", 84},
           Case{"Using BATT (Charge: 84%)", std::nullopt},
           Case{"Using Batt(Charge: 100)", std::nullopt},
           Case{"(Charge:0%)", 0},
           Case{"(Charge:100%)", 100},
           Case{"(Charge:101%)", std::nullopt},
           Case{"(Charge:007%)", 7},
           Case{"(Charge:99999999999999999999%)", std::nullopt},
           Case{"(Charge:-5%)", std::nullopt},
           Case{"(Charge:)", std::nullopt},
           Case{"Charge:", std::nullopt},
           Case{"Charge:5", 5},
           Case{"(charge:84%)", std::nullopt},
           Case{"(Charge:x%) (Charge:84%)", std::nullopt},  // only the first counts
           Case{"(Charge:83%) (Charge:84%)", 83},
           Case{"Using BATT", std::nullopt},
       }) {
    const auto night = parsed(at("23:00:00", "Sleep", detail) + at("07:00:00", "Wake", detail));
    EXPECT_EQ(night.chargeAtSleep, charge) << detail;
    EXPECT_EQ(night.chargeAtWake, charge) << detail;
  }
}

TEST(OvernightLogTest, CausesOfDarkWakes) {
  struct Case {
    std::string detail;
    std::string_view cause;
  };
  for (const auto& [detail, cause] : {
           Case{"due to Wifi", "Wi-Fi or Bluetooth"},
           Case{"due to SMC.OutboxNotEmpty wifibt/ Using BATT", "Wi-Fi or Bluetooth"},
           Case{"due to ARPT/Network", "Wi-Fi or Bluetooth"},
           Case{"due to Bluetooth", "Wi-Fi or Bluetooth"},
           Case{"due to RTC/Maintenance", "Scheduled maintenance"},
           Case{"due to Alarm", "Scheduled maintenance"},
           Case{"due to MAINTENANCE", "Scheduled maintenance"},
           Case{"due to EC.ACAttach/Maintenance", "Scheduled maintenance"},  // the earlier rule
           Case{"due to wifi RTC", "Wi-Fi or Bluetooth"},
           Case{"due to USB-C_plug", "A USB accessory"},
           Case{"due to ACAttach", "The power adapter"},
           Case{"due to PowerSource", "The power adapter"},
           Case{"due to x Using AC (Charge:100%)", "The power adapter"},
           Case{"due to AC", "The system"},
           Case{"due to AC on", "The system"},
           Case{"due to HID Activity", "You"},
           Case{"due to EC.LidOpen", "You"},
           Case{"due to UserActivity Assertion", "You"},
           Case{"due to EC.SleepTimer/SleepTimer", "The system"},
           Case{"due to ", "The system"},
           Case{"", "The system"},
           Case{"DarkWake from lid", "You"},    // without "due to " all of it counts
           Case{"lid Due To sun", "You"},       // which is told apart by its letters
           Case{"usb due to x", "The system"},  // what stands before does not count
           Case{"due to x due to usb", "A USB accessory"},
           Case{"usb due to x due to lid", "You"},
           Case{"due to \xFF\xFE usb \x80", "A USB accessory"},
           Case{"due to L\xC4\xB0"
                "D",
                "The system"},  // a capital I with a dot is another letter
       }) {
    EXPECT_EQ(OvernightLog::cause(detail), cause) << detail;
  }
}

TEST(OvernightLogTest, RequestersOfStarredWakes) {
  struct Case {
    std::string detail;
    std::optional<std::string> requester;
  };
  for (const auto& [detail, requester] : {
           Case{"[*process=dasd request=X info=\"com.apple.searchd\"]", "Spotlight"},
           Case{"[*process=dasd request=X info=\"com.apple.spotlight.x\"]", "Spotlight"},
           Case{"[*process=dasd request=X info=\"com.apple.Spotlight\"]", "Background tasks"},
           Case{"[*process=dasd request=X info=\"com.apple.backupd-auto\"]", "Time Machine"},
           Case{"[*process=dasd info=\"backupd searchd\"]", "Spotlight"},
           Case{"[*process=backupd request=X]", "Time Machine"},
           Case{"[*process=backupd2 request=X]", "backupd2"},
           Case{"[*process=mDNSResponder request=Maintenance]", "Network (mDNSResponder)"},
           Case{"[*process=powerd request=TCPKATurnOff]", "macOS power management"},
           Case{"[*process=dasd]", "Background tasks"},
           Case{"[*process=dasd", "Background tasks"},
           Case{"[process=powerd request=X] [*process=dasd request=Y]", "Background tasks"},
           Case{"[*process=dasd ] [*process=powerd ]", "Background tasks"},
           Case{"[*process=com.example.Updater request=X]", "Updater"},
           Case{"[*process=bluetoothd request=X]", "bluetoothd"},
           Case{"[*process=searchd request=X]", "searchd"},  // the info counts, not the process
           // The first info behind the process counts, also of a later request.
           Case{"[*process=powerd x] [process=dasd info=\"com.apple.backupd\"]", "Time Machine"},
           Case{"[process=dasd info=\"backupd\"] [*process=powerd x]", "macOS power management"},
           Case{"[*process=dasd info=\"searchd", "Spotlight"},  // no closing quote
           Case{"[*process=dasd info=\"x\" searchd]", "Background tasks"},
           Case{"[*process=dasd info=searchd]", "Background tasks"},
           Case{"[*process= request=X]", ""},
           Case{"[process=dasd request=X]", std::nullopt},
           Case{"[*proc=UserEventAgent request=TimerPlugin]", std::nullopt},
           Case{"[* process=dasd]", std::nullopt},
           Case{"", std::nullopt},
           Case{"[*process=\xFF\xFEx request]", "\xEF\xBF\xBD\xEF\xBF\xBDx"},
       }) {
    EXPECT_EQ(OvernightLog::starredRequester(detail), requester) << detail;
  }
}

TEST(OvernightLogTest, ARequestWithoutAStarCountsForNobody) {
  const auto night =
      parsed(at("23:00:00", "Sleep") + at("23:00:01", "Wake Requests", "[process=dasd request=X]") +
             at("07:00:00", "Wake"));
  EXPECT_TRUE(night.requesters.empty());
}

TEST(OvernightLogTest, TheMostFrequentComeFirstAndEqualsAsFirstSeen) {
  std::string log = at("23:00:00", "Sleep");
  for (const auto* cause : {"x", "lid", "usb", "lid", "rtc", "usb", "wifi"}) {
    log += at("01:00:00", "DarkWake", cause);
  }
  for (const auto* process : {"zed", "powerd", "abc", "powerd", "dasd"}) {
    log += at("02:00:00", "Wake Requests", fmt::format("[*process={} ]", process));
  }
  const auto night = parsed(log + at("07:00:00", "Wake"));
  EXPECT_EQ(night.causes, (Tallies{{"You", 2},
                                   {"A USB accessory", 2},
                                   {"The system", 1},
                                   {"Scheduled maintenance", 1},
                                   {"Wi-Fi or Bluetooth", 1}}));
  EXPECT_EQ(
      night.requesters,
      (Tallies{{"macOS power management", 2}, {"zed", 1}, {"abc", 1}, {"Background tasks", 1}}));
}

TEST(OvernightLogTest, LinesEndWithLFOrCRLF) {
  std::string log = nightWith("due to usb 45 secs") + "\n\n";
  for (std::size_t i = 0; (i = log.find('\n', i)) != std::string::npos; i += 2) {
    log.replace(i, 1, "\r\n");
  }
  const auto night = parsed(log);
  EXPECT_EQ(night.awakeSeconds, 45);
  EXPECT_EQ(night, parsed(nightWith("due to usb 45 secs")));
}

TEST(OvernightLogTest, TheLastLineNeedsNoEnd) {
  std::string log = nightWith("due to usb 45 secs");
  log.pop_back();
  EXPECT_EQ(parsed(log), parsed(nightWith("due to usb 45 secs")));
}

}  // namespace
}  // namespace embrix
