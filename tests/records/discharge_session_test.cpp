#include "records/discharge_session.h"

#include <limits>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sample_records.h"

namespace embrix {
namespace {

using namespace std::string_view_literals;

using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kNow = 1'750'000'000;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kMostInt = std::numeric_limits<int>::max();
constexpr int kLeastInt = std::numeric_limits<int>::min();

using Entries = std::vector<DischargeSession::Entry>;

TEST(DischargeSessionTest, ANewSessionIsEmpty) {
  const DischargeSession session = DischargeSession::begun(kNow, 98);
  EXPECT_EQ(session.start, kNow);
  EXPECT_EQ(session.lastTime, kNow);
  EXPECT_EQ(session.startPercent, 98);
  EXPECT_EQ(session.totalWattHours, 0);
  EXPECT_EQ(session.sleepStart, std::nullopt);
}

TEST(DischargeSessionTest, EnergyAddsUp) {
  DischargeSession session = bareSession();
  session.record(kNow + 2, 18, Entries{{"a", "A", 9}, {"b", "B", 3}}, 2);
  session.record(kNow + 6, 9, Entries{{"a", "A again", 4}}, 4);
  EXPECT_THAT(session.totalWattHours, DoubleEq((18 * 2 + 9 * 4) / 3600.0));
  EXPECT_THAT(session.groupWattHours.at("a"sv), DoubleEq((9 * 2 + 4 * 4) / 3600.0));
  EXPECT_THAT(session.groupWattHours.at("b"sv), DoubleEq(3 * 2 / 3600.0));
  EXPECT_EQ(session.groupNames.at("a"sv), "A again");
  EXPECT_EQ(session.lastTime, kNow + 6);
}

TEST(DischargeSessionTest, AnHourAfterSleepCountsAsThirtySecondsAndTheTimeMoves) {
  DischargeSession session = bareSession();
  session.record(kNow + 3600, 12, Entries{{"a", "A", 6}}, 3600);
  EXPECT_THAT(session.totalWattHours, DoubleEq(0.1));
  EXPECT_THAT(session.groupWattHours.at("a"sv), DoubleEq(0.05));
  EXPECT_EQ(session.lastTime, kNow + 3600);
}

TEST(DischargeSessionTest, NoTimeAddsNothingButTheTimeMoves) {
  for (const double dt : {0.0, -2.0, -31'536'000.0, kNaN}) {
    DischargeSession session = bareSession();
    session.record(kNow + 5, 12, Entries{{"a", "A", 6}}, dt);
    EXPECT_EQ(session.totalWattHours, 0) << dt;
    EXPECT_THAT(session.groupWattHours, IsEmpty()) << dt;
    EXPECT_EQ(session.lastTime, kNow + 5) << dt;
  }
}

TEST(DischargeSessionTest, OnlyGroupsThatDrawSomethingAreAdded) {
  DischargeSession session = bareSession();
  session.record(
      kNow, kNaN,
      Entries{
          {"a", "A", 0}, {"b", "B", -1}, {"c", "C", kNaN}, {"d", "D", kInfinity}, {"e", "E", 1}},
      2);
  EXPECT_EQ(session.totalWattHours, 0);
  EXPECT_THAT(session.groupWattHours, SizeIs(1));
  EXPECT_THAT(session.groupNames, SizeIs(1));
}

TEST(DischargeSessionTest, WhatWentAsleepIsAddedOnWaking) {
  DischargeSession session = bareSession();
  session.sleepStart = {.time = kNow, .percent = 80, .remainingWh = 50};
  session.didWake(kNow + 28'800, 76, 47.5);
  EXPECT_EQ(session.asleepSeconds, 28'800);
  EXPECT_EQ(session.asleepPercent, 4);
  EXPECT_EQ(session.asleepWattHours, 2.5);
  EXPECT_EQ(session.sleepStart, std::nullopt);
  EXPECT_EQ(session.lastTime, kNow + 28'800);
  EXPECT_EQ(session.totalWattHours, 0);

  session.sleepStart = {.time = kNow + 30'000, .percent = 76, .remainingWh = 47.5};
  session.didWake(kNow + 30'100, 75, 47);
  EXPECT_EQ(session.asleepSeconds, 28'900);
  EXPECT_EQ(session.asleepPercent, 5);
  EXPECT_EQ(session.asleepWattHours, 3);
}

TEST(DischargeSessionTest, AWakeWithoutAMarkChangesNothing) {
  DischargeSession session = bareSession();
  session.didWake(kNow + 100, 50, 20);
  EXPECT_EQ(session, bareSession());
}

TEST(DischargeSessionTest, OnlyWhatIsKnownOnBothSidesOfSleepIsAdded) {
  DischargeSession session = bareSession();
  session.sleepStart = {.time = kNow, .percent = 80, .remainingWh = {}};
  session.didWake(kNow + 10, {}, 40);
  EXPECT_EQ(session.asleepPercent, 0);
  EXPECT_EQ(session.asleepWattHours, 0);
  EXPECT_EQ(session.asleepSeconds, 10);
}

TEST(DischargeSessionTest, WhatGrewAsleepCountsAsNothingLost) {
  DischargeSession session = bareSession();
  session.sleepStart = {.time = kNow, .percent = 50, .remainingWh = 30};
  session.didWake(kNow - 31'536'000, 60, 36);
  EXPECT_EQ(session.asleepSeconds, 0);
  EXPECT_EQ(session.asleepPercent, 0);
  EXPECT_EQ(session.asleepWattHours, 0);
  EXPECT_EQ(session.sleepStart, std::nullopt);
}

TEST(DischargeSessionTest, NoChargeIsTooLargeToCount) {
  DischargeSession session = bareSession();
  session.asleepPercent = kMostInt;
  session.sleepStart = {.time = kNow, .percent = kMostInt, .remainingWh = kInfinity};
  session.didWake(kNow, kLeastInt, 1);
  EXPECT_EQ(session.asleepPercent, kMostInt);
  EXPECT_EQ(session.asleepWattHours, 0);
}

TEST(DischargeSessionTest, SharesAreLargestFirstWithTheRestOfTheMachineAmongThem) {
  DischargeSession session = bareSession();
  session.totalWattHours = 10;
  session.groupWattHours[SharedText("a")] = 1;
  session.groupWattHours[SharedText("b")] = 5;
  session.groupNames[SharedText("b")] = SharedText("Browser");
  EXPECT_THAT(session.shares(5),
              ElementsAre(DischargeSession::Share{"b", "Browser", 5, 0.5},
                          DischargeSession::Share{"system", "Display & system", 4, 0.4},
                          DischargeSession::Share{"a", "a", 1, 0.1}));
}

TEST(DischargeSessionTest, AppsBeyondTheLimitAreInNoLine) {
  DischargeSession session = bareSession();
  session.totalWattHours = 10;
  session.groupWattHours[SharedText("a")] = 1;
  session.groupWattHours[SharedText("b")] = 5;
  EXPECT_THAT(session.shares(1),
              ElementsAre(DischargeSession::Share{"b", "b", 5, 0.5},
                          DischargeSession::Share{"system", "Display & system", 4, 0.4}));
  EXPECT_THAT(session.shares(0), SizeIs(1));
  EXPECT_THAT(session.shares(-3), SizeIs(1));
}

TEST(DischargeSessionTest, AppsThatAddUpToAllOrMoreLeaveNoRest) {
  for (const double second : {5.0, 7.5}) {
    DischargeSession session = bareSession();
    session.totalWattHours = 10;
    session.groupWattHours[SharedText("a")] = 5;
    session.groupWattHours[SharedText("b")] = second;
    const auto shares = session.shares(5);
    ASSERT_THAT(shares, SizeIs(2)) << second;
    for (const auto& share : shares) EXPECT_NE(share.id, "system");
  }
}

TEST(DischargeSessionTest, WithoutEnergyThereAreNoShares) {
  DischargeSession session = bareSession();
  session.groupWattHours[SharedText("a")] = 5;
  EXPECT_THAT(session.shares(5), IsEmpty());
  session.totalWattHours = -1;
  EXPECT_THAT(session.shares(5), IsEmpty());
}

TEST(DischargeSessionTest, ThePercentUsedNeverFallsBelow0) {
  DischargeSession session = DischargeSession::begun(kNow, 80);
  EXPECT_EQ(session.percentUsed(73), 7);
  EXPECT_EQ(session.percentUsed(80), 0);
  EXPECT_EQ(session.percentUsed(81), 0);
  EXPECT_EQ(session.percentUsed({}), std::nullopt);
  EXPECT_EQ(DischargeSession::begun(kNow, {}).percentUsed(50), std::nullopt);
  EXPECT_EQ(DischargeSession::begun(kNow, kMostInt).percentUsed(kLeastInt), kMostInt);
}

TEST(DischargeSessionTest, TheFortyHeaviestGroupsAreLookedAtAndThoseOfLittleWattsPassedOver) {
  std::vector<AppGroup> groups(42);
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i].identity = {.key = fmt::format("{}", i), .name = "name", .app = {}};
    groups[i].watts = 9;
  }
  groups[38].watts = 0.02;
  groups[39].watts = 0.0199;
  const Entries entries = DischargeSession::entriesOf(groups);
  ASSERT_THAT(entries, SizeIs(39));
  EXPECT_EQ(entries.back(), (DischargeSession::Entry{"38", "name", 0.02}));
}

}  // namespace
}  // namespace embrix
