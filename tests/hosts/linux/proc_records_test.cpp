#include "hosts/linux/proc_records.h"

#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

const std::string kStat =
    "4242 (node) S 100 4242 4242 0 -1 4194304 11 12 13 14 1500 250 3 4 20 0 7 0 987654 1000000 "
    "2048 "
    "18446744073709551615 1 1 0";

TEST(ProcStatTest, FieldsAreTakenFromTheirPlaces) {
  const auto stat = parseProcStat(kStat);
  ASSERT_TRUE(stat);
  EXPECT_EQ(stat->pid, 4242);
  EXPECT_EQ(stat->commandName, "node");
  EXPECT_EQ(stat->state, 'S');
  EXPECT_EQ(stat->ppid, 100);
  EXPECT_EQ(stat->userTicks, 1500u);
  EXPECT_EQ(stat->systemTicks, 250u);
  EXPECT_EQ(stat->threads, 7);
  EXPECT_EQ(stat->startTicks, 987654u);
  EXPECT_EQ(stat->residentPages, 2048u);
}

struct NameCase {
  const char* label;
  std::string name;
};

TEST(ProcStatTest, NamesMayHoldAnything) {
  const NameCase cases[] = {
      {"blanks", "Web Content"},
      {"a bracket that closes", "a) R 1 1 1"},
      {"a bracket that opens", "(sd-pam)"},
      {"control characters", "a\tb\nc\x1b[31m"},
      {"bytes that are no UTF-8", "\xff\xfe"},
      {"nothing", ""},
  };
  for (const NameCase& c : cases) {
    SCOPED_TRACE(c.label);
    const std::string text = "7 (" + c.name + ") R 1 7 7 0 -1 0 0 0 0 0 5 6 0 0 20 0 1 0 42 0 9 0";
    const auto stat = parseProcStat(text);
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->commandName, c.name);
    EXPECT_EQ(stat->ppid, 1);
    EXPECT_EQ(stat->startTicks, 42u);
  }
}

TEST(ProcStatTest, EveryTruncationIsAbsentUntilTheLastFieldStands) {
  const std::size_t whole = kStat.find(" 2048") + 2;
  for (std::size_t size = 0; size < whole; ++size) {
    EXPECT_FALSE(parseProcStat(std::string_view(kStat).substr(0, size))) << size;
  }
  EXPECT_TRUE(parseProcStat(std::string_view(kStat).substr(0, whole + 3)));
}

TEST(ProcStatTest, NumbersThatFitNowhereAreAbsent) {
  std::string text = kStat;
  text.replace(text.find("1500"), 4, "99999999999999999999999");
  EXPECT_FALSE(parseProcStat(text));
}

TEST(ProcStatTest, NegativeResidentSetCountsAsNone) {
  std::string text = kStat;
  text.replace(text.find("2048"), 4, "-7");
  const auto stat = parseProcStat(text);
  ASSERT_TRUE(stat);
  EXPECT_EQ(stat->residentPages, 0u);
}

TEST(SchedStatTest, RunTimeAndTimeSlices) {
  const auto sched = parseSchedStat("123456789012 77 345\n");
  ASSERT_TRUE(sched);
  EXPECT_EQ(sched->runNS, 123456789012u);
  EXPECT_EQ(sched->timeSlices, 345u);
  EXPECT_FALSE(parseSchedStat(""));
  EXPECT_FALSE(parseSchedStat("1 2"));
  EXPECT_FALSE(parseSchedStat("one 2 3"));
}

TEST(EffectiveUserTest, IsTheSecondNumber) {
  EXPECT_EQ(parseEffectiveUser("Name:\tsudo\nUid:\t1000\t0\t0\t0\nGid:\t5\t5\t5\t5\n"), 0u);
  EXPECT_FALSE(parseEffectiveUser("Name:\tUid: 5 6\n"));
  EXPECT_FALSE(parseEffectiveUser("Uid:\t1000\n"));
  EXPECT_FALSE(parseEffectiveUser("Uid:\t1000\t99999999999\n"));
}

TEST(BootTimeTest, StandsBehindALongLineOfInterrupts) {
  std::string text = "cpu  1 2 3 4 5 6 7 8 9 10\nintr 5";
  for (int i = 0; i < 50'000; ++i) text += " 0";
  text += "\nctxt 12\nbtime 1700000000\n";
  EXPECT_EQ(parseBootTime(text), 1700000000u);
  EXPECT_FALSE(parseBootTime("btime soon\n"));
}

TEST(BusyTicksTest, LeavesOutIdleAndStolenTime) {
  EXPECT_EQ(parseBusyTicks("cpu  1 2 3 1000 2000 6 7 3000 9 10\ncpu0 1 1 1\n"), 19u);
  EXPECT_FALSE(parseBusyTicks("cpu  1 2 3\n"));
  EXPECT_FALSE(parseBusyTicks("cpu0 1 2 3 4 5 6 7\n"));
}

}  // namespace
}  // namespace embrix
