#include "records/archive.h"

#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sample_records.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

DayLedger ledgerOf(std::string_view day, double wattHours,
                   std::vector<std::pair<std::string, double>> groups = {}) {
  DayLedger ledger = DayLedger::fresh(day);
  ledger.totalWattHours = wattHours;
  for (const auto& [key, energy] : groups) {
    ledger.groupWattHours[SharedText(key)] = energy;
    ledger.groupNames[SharedText(key)] = SharedText("name of " + key);
  }
  return ledger;
}

// The day of that number, counted from 2020-01-01 in months of 28 days.
std::string dayNumber(int number) {
  return fmt::format("{}-{:02}-{:02}", 2020 + number / 336, number / 28 % 12 + 1, number % 28 + 1);
}

std::string textOf(const Archive& archive) {
  std::string text;
  for (const std::string_view piece : archive.text()) text += piece;
  return text;
}

TEST(ArchiveTest, ADayIsTakenFromTheLedgerAndTheBattery) {
  Archive archive;
  archive.record(ledgerOf("2026-03-02", 120.5, {{"a", 40}, {"b", 2}}),
                 BatteryReading{.healthPercent = 91, .cycleCount = 312, .fullWh = 68.5});
  ASSERT_THAT(archive.days(), SizeIs(1));
  const DailyRecord expected{.day = "2026-03-02",
                             .wattHours = 120.5,
                             .appWattHours = wattsOf({{"a", 40}, {"b", 2}}),
                             .appNames = namesOf({{"a", "name of a"}, {"b", "name of b"}}),
                             .health = 91,
                             .cycles = 312,
                             .fullWh = 68.5};
  EXPECT_EQ(archive.days().front(), expected);
}

TEST(ArchiveTest, Of41GroupsTheSmallestIsLeftOut) {
  DayLedger ledger = DayLedger::fresh("2026-03-02");
  for (int i = 0; i < 41; ++i) {
    const SharedText key(fmt::format("app{:02}", i));
    ledger.groupWattHours[key] = 1 + (i * 7 % 41);  // app00 is the smallest
    ledger.groupNames[key] = key;
  }
  Archive archive;
  archive.record(ledger, {});
  const DailyRecord& day = archive.days().front();
  EXPECT_EQ(day.appWattHours.size(), 40u);
  EXPECT_EQ(day.appNames.size(), 40u);
  EXPECT_EQ(day.appWattHours.find("app00"), nullptr);
  EXPECT_EQ(day.appNames.find("app00"), nullptr);
}

TEST(ArchiveTest, AGroupWithoutANameHasNone) {
  DayLedger ledger = ledgerOf("2026-03-02", 1, {{"a", 1}});
  ledger.groupNames.clear();
  Archive archive;
  archive.record(ledger, {});
  EXPECT_EQ(archive.days().front().appWattHours.size(), 1u);
  EXPECT_TRUE(archive.days().front().appNames.empty());
}

TEST(ArchiveTest, TodayIsRewrittenEachTime) {
  Archive archive;
  archive.record(ledgerOf("2026-03-02", 1, {{"a", 1}}), {});
  archive.record(ledgerOf("2026-03-02", 2, {{"b", 2}}), {});
  ASSERT_THAT(archive.days(), SizeIs(1));
  EXPECT_EQ(archive.days().front().wattHours, 2);
  EXPECT_EQ(archive.days().front().appWattHours, wattsOf({{"b", 2}}));
}

TEST(ArchiveTest, TodayKeepsTheBatteryThatIsNotToldAnyMore) {
  Archive archive;
  archive.record(ledgerOf("2026-03-02", 1),
                 BatteryReading{.healthPercent = 91, .cycleCount = 312, .fullWh = 68.5});
  archive.record(ledgerOf("2026-03-02", 2), {});
  EXPECT_EQ(archive.days().front().health, 91);
  EXPECT_EQ(archive.days().front().cycles, 312);
  EXPECT_EQ(archive.days().front().fullWh, 68.5);
  archive.record(ledgerOf("2026-03-02", 3), BatteryReading{.healthPercent = 90});
  EXPECT_EQ(archive.days().front().health, 90);
  EXPECT_EQ(archive.days().front().cycles, 312);
  archive.record(ledgerOf("2026-03-03", 3), {});
  EXPECT_EQ(archive.days().back().health, std::nullopt);
}

TEST(ArchiveTest, ADayIsPutWhereItBelongs) {
  Archive archive;
  for (const char* day : {"2026-03-02", "2025-12-31", "2026-03-01"}) {
    archive.record(ledgerOf(day, 1), {});
  }
  std::vector<std::string> days;
  for (const DailyRecord& day : archive.days()) days.push_back(day.day);
  EXPECT_THAT(days, ElementsAre("2025-12-31", "2026-03-01", "2026-03-02"));
}

TEST(ArchiveTest, The401stDayRemovesTheOldest) {
  Archive archive;
  for (int i = 0; i < 400; ++i) archive.record(ledgerOf(dayNumber(i), i), {});
  EXPECT_THAT(archive.days(), SizeIs(400));
  EXPECT_EQ(archive.days().front().day, dayNumber(0));
  archive.record(ledgerOf(dayNumber(400), 400), {});
  EXPECT_THAT(archive.days(), SizeIs(400));
  EXPECT_EQ(archive.days().front().day, dayNumber(1));
  EXPECT_EQ(archive.days().back().day, dayNumber(400));
}

TEST(ArchiveTest, ADayBeforeAllOthersGoesAtOnceFromAFullArchive) {
  Archive archive;
  for (int i = 1; i <= 400; ++i) archive.record(ledgerOf(dayNumber(i), i), {});
  archive.record(ledgerOf("1970-01-01", 1), {});
  EXPECT_THAT(archive.days(), SizeIs(400));
  EXPECT_EQ(archive.days().front().day, dayNumber(1));
}

TEST(ArchiveTest, MoreDaysThanItKeepsAreCutWithTheNextDay) {
  std::vector<DailyRecord> days;
  for (int i = 0; i < 450; ++i) days.push_back(bareDay(dayNumber(i)));
  Archive archive(days);
  EXPECT_THAT(archive.days(), SizeIs(450));
  archive.record(ledgerOf(dayNumber(449), 5), {});
  EXPECT_THAT(archive.days(), SizeIs(450));
  archive.record(ledgerOf(dayNumber(450), 5), {});
  EXPECT_THAT(archive.days(), SizeIs(400));
  EXPECT_EQ(archive.days().front().day, dayNumber(51));
}

TEST(ArchiveTest, DaysThatComeInAnyOrderAreSorted) {
  const Archive archive({bareDay("2026-03-02"), bareDay("2026-03-01")});
  EXPECT_EQ(archive.days().front().day, "2026-03-01");
}

TEST(ArchiveTest, OfADayThatIsThereTwiceTheFirstIsRewritten) {
  Archive archive({bareDay("2026-03-02"), bareDay("2026-03-02")});
  archive.record(ledgerOf("2026-03-02", 5), {});
  ASSERT_THAT(archive.days(), SizeIs(2));
  EXPECT_EQ(archive.days()[0].wattHours, 5);
  EXPECT_EQ(archive.days()[1].wattHours, 0);
}

TEST(ArchiveTest, EnergyIsSummedOverTheLastRecordedDays) {
  Archive archive;
  archive.record(ledgerOf("2026-02-20", 1), {});
  archive.record(ledgerOf("2026-02-27", 10), {});
  archive.record(ledgerOf("2026-03-01", 100), {});
  archive.record(ledgerOf("2026-03-02", 1000), {});
  struct Case {
    const char* label;
    int lastDays;
    const char* endingOn;
    double expected;
  };
  const Case cases[] = {
      {"today", 1, "2026-03-02", 1000},
      {"days without a record are passed over", 3, "2026-03-02", 1110},
      {"all there are", 400, "2026-03-02", 1111},
      {"an earlier day", 2, "2026-03-01", 110},
      {"a day without a record", 2, "2026-02-28", 11},
      {"a day to come", 1, "2027-01-01", 1000},
      {"before all", 7, "2026-01-01", 0},
      {"no days", 0, "2026-03-02", 0},
      {"fewer than none", -5, "2026-03-02", 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(archive.totalWattHours(c.lastDays, c.endingOn), c.expected) << c.label;
  }
}

TEST(ArchiveTest, AppsAreSummedByKeyWithTheLatestNameAndLargestFirst) {
  DailyRecord first = bareDay("2026-03-01");
  first.appWattHours = wattsOf({{"a", 5}, {"b", 9}, {"c", 1}});
  first.appNames = namesOf({{"a", "Old A"}, {"b", "B"}, {"x", "no energy"}});
  DailyRecord second = bareDay("2026-03-02");
  second.appWattHours = wattsOf({{"a", 6}});
  second.appNames = namesOf({{"a", "New A"}});
  DailyRecord third = bareDay("2026-03-03");
  third.appWattHours = wattsOf({{"a", 100}});
  const Archive archive({first, second, third});

  EXPECT_THAT(archive.apps(2, "2026-03-02"),
              ElementsAre(Archive::App{"a", "New A", 11}, Archive::App{"b", "B", 9},
                          Archive::App{"c", "c", 1}));
  EXPECT_THAT(archive.apps(3, "2026-03-03").front(), (Archive::App{"a", "New A", 111}));
  EXPECT_THAT(archive.apps(1, "2026-03-03"), ElementsAre(Archive::App{"a", "a", 100}));
  EXPECT_THAT(archive.apps(7, "2026-01-01"), SizeIs(0));
}

TEST(ArchiveTest, HealthIsToldForTheDaysOnWhichItWasKnown) {
  DailyRecord without = bareDay("2026-03-02");
  DailyRecord before = bareDay("2026-03-01");
  before.health = 92;
  DailyRecord after = bareDay("2026-03-03");
  after.health = 91;
  EXPECT_THAT(Archive({after, without, before}).health(),
              ElementsAre(Archive::Health{"2026-03-01", 92}, Archive::Health{"2026-03-03", 91}));
}

TEST(ArchiveTest, ItsTextFollowsEveryChange) {
  Archive archive;
  EXPECT_EQ(textOf(archive), R"({"days":[]})");
  archive.record(ledgerOf("2026-03-02", 1), {});
  const std::string empty = R"("appWattHours":{},"appNames":{}})";
  EXPECT_EQ(textOf(archive), R"({"days":[{"day":"2026-03-02","wattHours":1,)" + empty + "]}");
  archive.record(ledgerOf("2026-03-02", 2), {});
  EXPECT_EQ(textOf(archive), R"({"days":[{"day":"2026-03-02","wattHours":2,)" + empty + "]}");
  archive.record(ledgerOf("2026-03-01", 3), {});
  EXPECT_EQ(textOf(archive), R"({"days":[{"day":"2026-03-01","wattHours":3,)" + empty +
                                 R"(,{"day":"2026-03-02","wattHours":2,)" + empty + "]}");
}

TEST(ArchiveTest, ACopyIsUntouchedByWhatBecomesOfTheOriginal) {
  Archive archive;
  archive.record(ledgerOf("2026-03-02", 1, {{"a", 1}}), {});
  const Archive copy = archive;
  archive.record(ledgerOf("2026-03-02", 2, {{"b", 1}}), {});
  EXPECT_EQ(copy.days().front().wattHours, 1);
  EXPECT_THAT(textOf(copy), testing::HasSubstr("\"wattHours\":1"));
}

}  // namespace
}  // namespace embrix
