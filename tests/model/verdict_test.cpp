#include "model/verdict.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "worlds/frames.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

TEST(VerdictTest, OneProgramThatStandsOutIsTheCulprit) {
  const auto node = row(1, "node", 6);
  const Verdict verdict = Verdict::make({group("c", "Code", {node, row(2, "Code", 2)})}, 20);
  EXPECT_EQ(verdict.kind, Verdict::Kind::culprit);
  EXPECT_EQ(verdict.headline, "node in Code is heating your Mac");
  EXPECT_EQ(verdict.detail, "Using 6.0 W · 30% of your Mac's power");
  EXPECT_EQ(verdict.summary, "Mostly node in Code");
  EXPECT_EQ(verdict.subject, "node in Code");
  EXPECT_EQ(verdict.name, "node");
  EXPECT_EQ(verdict.app, "Code");
  EXPECT_THAT(verdict.processes, ElementsAre(node));
}

TEST(VerdictTest, AProcessNamedLikeItsAppIsTheApp) {
  const Verdict verdict = Verdict::make({app("Safari", 6)}, 20);
  EXPECT_EQ(verdict.kind, Verdict::Kind::culprit);
  EXPECT_EQ(verdict.headline, "Safari is heating your Mac");
  EXPECT_EQ(verdict.subject, "Safari");
  EXPECT_EQ(verdict.name, "Safari");
  EXPECT_EQ(verdict.app, std::nullopt);
}

TEST(VerdictTest, AProcessIsCalledByTheNameThatAPersonReads) {
  const Verdict verdict =
      Verdict::make({group("s", "Safari", {row(1, "com.apple.WebKit.WebContent", 6)})}, 20);
  EXPECT_EQ(verdict.name, "WebContent");
  EXPECT_EQ(verdict.subject, "WebContent in Safari");
}

TEST(VerdictTest, CopiesAreCounted) {
  const Verdict verdict = Verdict::make(
      {group("c", "Code", {row(1, "node", 2), row(2, "node", 2), row(3, "node", 2)})}, 6);
  EXPECT_EQ(verdict.detail, "Using 6.0 W · 100% of your Mac's power · 3 copies running");
  EXPECT_EQ(verdict.processes.size(), 3U);
}

TEST(VerdictTest, WithoutOneProgramThatStandsOutTheAppIsBusy) {
  const Verdict verdict =
      Verdict::make({group("c", "Code", {row(1, "node", 3), row(2, "tsc", 3)})}, 20);
  EXPECT_EQ(verdict.kind, Verdict::Kind::busy);
  EXPECT_EQ(verdict.headline, "Code is working hard");
  EXPECT_EQ(verdict.detail, "Using 6.0 W · 30% of your Mac's power, across 2 processes");
  EXPECT_EQ(verdict.summary, "Mostly Code");
  EXPECT_EQ(verdict.subject, "Code");
  EXPECT_EQ(verdict.name, "Code");
  EXPECT_EQ(verdict.app, std::nullopt);
  EXPECT_THAT(verdict.processes, IsEmpty());
}

TEST(VerdictTest, AGroupWithoutProcessesIsBusy) {
  AppGroup empty = group("c", "Code", {});
  empty.watts = 6;
  EXPECT_EQ(Verdict::make({empty}, 20).kind, Verdict::Kind::busy);
  EXPECT_THAT(Verdict::make({empty}, 20).detail, EndsWith("across 0 processes"));
}

TEST(VerdictTest, NobodyIsToBlameWhenAllIsQuiet) {
  const Verdict verdict = Verdict::make({}, 20);
  EXPECT_EQ(verdict.kind, Verdict::Kind::calm);
  EXPECT_EQ(verdict.headline, "All quiet");
  EXPECT_EQ(verdict.detail, "No app is using much power.");
  EXPECT_EQ(verdict.summary, "Nothing is working hard");
  EXPECT_EQ(verdict.subject, std::nullopt);
  EXPECT_EQ(verdict.name, std::nullopt);
  EXPECT_EQ(verdict.app, std::nullopt);
  EXPECT_THAT(verdict.processes, IsEmpty());
}

struct KindCase {
  std::string label;
  std::vector<AppGroup> groups;
  double total = 0;
  Verdict::Kind expected = Verdict::Kind::calm;
};

class KindRule : public testing::TestWithParam<KindCase> {};

TEST_P(KindRule, FollowsFromWattsAndShares) {
  EXPECT_EQ(Verdict::make(GetParam().groups, GetParam().total).kind, GetParam().expected);
}

AppGroup halves(double first, double second) {
  return group("c", "Code", {row(1, "node", first), row(2, "tsc", second)});
}

INSTANTIATE_TEST_SUITE_P(
    VerdictTest, KindRule,
    testing::Values(
        KindCase{"AlittleTooLittle", {app("Safari", 1.49)}, 2, Verdict::Kind::calm},
        KindCase{"ExactlyEnoughAndAFifth", {app("Safari", 1.5)}, 7.5, Verdict::Kind::culprit},
        KindCase{"LessThanAFifth", {app("Safari", 2)}, 11, Verdict::Kind::calm},
        KindCase{"NoTotal", {app("Safari", 2)}, 0, Verdict::Kind::calm},
        KindCase{"ANegativeTotal", {app("Safari", 2)}, -5, Verdict::Kind::calm},
        KindCase{"ExactlyThreeFifths", {halves(3, 2)}, 10, Verdict::Kind::culprit},
        KindCase{"LessThanThreeFifths", {halves(2.9, 2)}, 10, Verdict::Kind::busy}),
    [](const auto& test) { return test.param.label; });

TEST(VerdictTest, OfEqualGroupsTheFirstIsNamed) {
  EXPECT_EQ(Verdict::make({app("Safari", 5, 1), app("Mail", 5, 2)}, 10).subject, "Safari");
}

TEST(VerdictTest, TheGroupWithTheMostIsNamedWhereverItStands) {
  EXPECT_EQ(Verdict::make({app("Safari", 5, 1), app("Mail", 6, 2)}, 11).subject, "Mail");
}

TEST(VerdictTest, APercentNeverPassesAHundredAndHalvesAreRoundedUp) {
  EXPECT_THAT(Verdict::make({app("Safari", 6)}, 4).detail, EndsWith("100% of your Mac's power"));
  EXPECT_THAT(Verdict::make({app("Safari", 4.5)}, 20).detail, EndsWith("23% of your Mac's power"))
      << "22.5";
}

}  // namespace
}  // namespace embrix
