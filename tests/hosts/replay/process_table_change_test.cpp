#include "hosts/replay/process_table_change.h"

#include <algorithm>
#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using Table = std::vector<RawProcess>;

RawProcess process(std::int32_t pid, std::uint64_t userTime = 0, std::uint64_t startTime = 100) {
  return {.pid = pid,
          .ppid = 1,
          .uid = 501,
          .startTime = startTime,
          .commandName = fmt::format("p{}", pid),
          .usage = RawUsage{.userTime = userTime}};
}

// What the change makes of the table, and nothing when it does not follow from it.
std::optional<Table> applied(const ProcessTableChange& change, Table table) {
  if (applyProcessTableChange(change, table)) return std::nullopt;
  return table;
}

std::string problemOf(const ProcessTableChange& change, Table table) {
  const auto problem = applyProcessTableChange(change, table);
  return problem ? problem->text : "";
}

TEST(ProcessTableChangeTest, TheFirstTableIsTold) {
  const Table after = {process(3), process(1)};
  EXPECT_EQ(processTableChange({}, after), ProcessTableChange{.all = after});
  EXPECT_EQ(processTableChange({}, {}), ProcessTableChange{.all = Table{}});
}

TEST(ProcessTableChangeTest, AnEqualTableIsNoChange) {
  const Table table = {process(3), process(1)};
  EXPECT_EQ(processTableChange(table, table), ProcessTableChange{});
}

TEST(ProcessTableChangeTest, OnlyCountersThatMovedAreTold) {
  RawProcess unreadable = process(2);
  unreadable.usage = std::nullopt;
  const ProcessTableChange change = processTableChange({process(1), process(2), process(3)},
                                                       {process(1, 5), unreadable, process(3)});
  EXPECT_EQ(change, (ProcessTableChange{.changed = {{1, RawUsage{.userTime = 5}}, {2, {}}}}));
}

TEST(ProcessTableChangeTest, NewProcessesKeepTheirPlaces) {
  const Table before = {process(2), process(4)};
  const Table after = {process(9), process(2), process(3), process(4), process(5)};
  const ProcessTableChange change = processTableChange(before, after);
  EXPECT_EQ(change,
            (ProcessTableChange{.added = {{0, process(9)}, {2, process(3)}, {4, process(5)}}}));
  EXPECT_EQ(applied(change, before), after);
}

TEST(ProcessTableChangeTest, APIDThatIsAnotherProcessNowIsGoneAndNew) {
  const Table before = {process(2), process(4)};
  RawProcess renamed = process(2);
  renamed.commandName = "exec";
  for (const RawProcess& other : {process(2, 0, 101), renamed}) {
    const ProcessTableChange change = processTableChange(before, {other, process(4)});
    EXPECT_EQ(change, (ProcessTableChange{.gone = {2}, .added = {{0, other}}}));
    EXPECT_EQ(applied(change, before), (Table{other, process(4)}));
  }
}

TEST(ProcessTableChangeTest, AnotherOrderIsToldWhole) {
  const Table after = {process(4), process(2)};
  EXPECT_EQ(processTableChange({process(2), process(4)}, after), ProcessTableChange{.all = after});
}

TEST(ProcessTableChangeTest, ATableWithAPIDTwiceIsToldWhole) {
  const Table twice = {process(2), process(2, 7)};
  EXPECT_EQ(processTableChange({process(2)}, twice), ProcessTableChange{.all = twice});
  EXPECT_EQ(processTableChange(twice, {process(2)}), ProcessTableChange{.all = Table{process(2)}});
}

TEST(ProcessTableChangeTest, ATableThatCouldNotBeReadIsAllGone) {
  const Table before = {process(2), process(4)};
  const ProcessTableChange change = processTableChange(before, {});
  EXPECT_EQ(change, (ProcessTableChange{.gone = {2, 4}}));
  EXPECT_EQ(applied(change, before), Table{});
}

TEST(ProcessTableChangeTest, WhatDoesNotFollowIsAProblem) {
  const Table table = {process(2), process(4)};
  struct Case {
    const char* label;
    ProcessTableChange change;
    const char* problem;
  };
  const Case cases[] = {
      {"gone but never there",
       {.gone = {3}},
       "processes: gone names pid 3, which is not in the table"},
      {"gone twice", {.gone = {2, 2}}, "processes: gone names pid 2, which is not in the table"},
      {"changed but never there",
       {.changed = {{3, {}}}},
       "processes: changed names pid 3, which is not in the table"},
      {"changed and gone",
       {.gone = {2}, .changed = {{2, {}}}},
       "processes: changed names pid 2, which is not in the table"},
      {"added but there",
       {.added = {{0, process(4)}}},
       "processes: added names pid 4, which is in the table already"},
      {"added twice",
       {.added = {{0, process(5)}, {1, process(5)}}},
       "processes: added names pid 5, which is in the table already"},
      {"added behind the end",
       {.added = {{3, process(5)}}},
       "processes: added names pid 5, at a place outside the table"},
      {"added at the largest place",
       {.added = {{UINT64_MAX, process(5)}}},
       "processes: added names pid 5, at a place outside the table"},
      {"two at one place",
       {.added = {{1, process(5)}, {1, process(6)}}},
       "processes: added names pid 6, at a place outside the table"},
      {"descending places",
       {.added = {{2, process(5)}, {1, process(6)}}},
       "processes: added names pid 6, at a place outside the table"},
  };
  for (const Case& test : cases)
    EXPECT_EQ(problemOf(test.change, table), test.problem) << test.label;
}

TEST(ProcessTableChangeTest, NothingFollowsFromATableWithAPIDTwice) {
  const Table twice = {process(2), process(2)};
  EXPECT_EQ(problemOf({.gone = {2}}, twice), "processes: follows from a table with a pid twice");
  EXPECT_EQ(applied({.all = Table{process(1)}}, twice), Table{process(1)});
}

TEST(ProcessTableChangeTest, AnyTwoTablesAreBridged) {
  std::mt19937 random(7);
  const auto upTo = [&](int most) { return std::uniform_int_distribution<>(0, most)(random); };
  Table before;
  for (int step = 0; step < 2000; ++step) {
    Table after;
    for (const RawProcess& old : before) {
      if (upTo(9) == 0) continue;
      after.push_back(old);
      if (upTo(2) == 0) after.back().usage = RawUsage{.userTime = random()};
      if (upTo(20) == 0) after.back().usage = std::nullopt;
      if (upTo(30) == 0) after.back().startTime += 1;
    }
    for (int i = upTo(4); i > 0; --i) {
      const auto place = after.begin() + upTo(static_cast<int>(after.size()));
      after.insert(place, process(upTo(80), random()));
    }
    if (upTo(40) == 0) std::shuffle(after.begin(), after.end(), random);
    ASSERT_EQ(applied(processTableChange(before, after), before), after) << "step " << step;
    before = after;
  }
}

}  // namespace
}  // namespace embrix
