#include "model/alert_policy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNow = 1'750'000'000;

TEST(AlertPolicyTest, AppsAlertInAscendingOrder) {
  AlertPolicy policy(1800);
  EXPECT_THAT(policy.appsToAlert({"b", "c", "a"}, kNow), ElementsAre("a", "b", "c"));
}

TEST(AlertPolicyTest, ASteadyRunawayAlertsOncePerCooldown) {
  AlertPolicy policy(1800);
  policy.appsToAlert({"a"}, kNow);
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 1799), IsEmpty());
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 1800), ElementsAre("a"));
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 1801), IsEmpty())
      << "the cooldown starts with the alert";
}

TEST(AlertPolicyTest, OneThatStopsAndReturnsWithinTheCooldownStaysSilent) {
  AlertPolicy policy(1800);
  policy.appsToAlert({"a"}, kNow);
  policy.appsToAlert({}, kNow + 600);
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 1200), IsEmpty());
}

TEST(AlertPolicyTest, ASnoozedGroupIsSilentUpToTheEndAndLosesNoTurn) {
  AlertPolicy policy(1800);
  policy.snooze("a", kNow + 1);
  EXPECT_THAT(policy.appsToAlert({"a", "b"}, kNow), ElementsAre("b"));
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 1), ElementsAre("a"))
      << "nothing was spent while it slept";
}

TEST(AlertPolicyTest, ASnoozeLeavesTheCooldownAsItIs) {
  AlertPolicy policy(1800);
  policy.appsToAlert({"a"}, kNow);
  policy.snooze("a", kNow + 60);
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 61), IsEmpty());
  EXPECT_THAT(policy.appsToAlert({"a"}, kNow + 1800), ElementsAre("a"));
}

struct EdgeCase {
  std::string label;
  ThermalState from;
  ThermalState to;
  bool expected = false;
};

class ThrottlingEdge : public testing::TestWithParam<EdgeCase> {};

TEST_P(ThrottlingEdge, AlertsOnTheWayInAlone) {
  AlertPolicy policy(1800);
  EXPECT_EQ(policy.shouldAlertThrottling(GetParam().from, GetParam().to, kNow),
            GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    AlertPolicyTest, ThrottlingEdge,
    testing::Values(
        EdgeCase{"NominalToFair", ThermalState::nominal, ThermalState::fair, false},
        EdgeCase{"FairToSerious", ThermalState::fair, ThermalState::serious, true},
        EdgeCase{"NominalToCritical", ThermalState::nominal, ThermalState::critical, true},
        EdgeCase{"SeriousToCritical", ThermalState::serious, ThermalState::critical, false},
        EdgeCase{"SeriousToSerious", ThermalState::serious, ThermalState::serious, false},
        EdgeCase{"CriticalToFair", ThermalState::critical, ThermalState::fair, false}),
    [](const auto& test) { return test.param.label; });

TEST(AlertPolicyTest, ThrottlingThatReturnsWithinTheCooldownIsSilent) {
  AlertPolicy policy(1800);
  EXPECT_TRUE(policy.shouldAlertThrottling(ThermalState::fair, ThermalState::critical, kNow));
  EXPECT_FALSE(policy.shouldAlertThrottling(ThermalState::critical, ThermalState::fair, kNow + 60));
  EXPECT_FALSE(
      policy.shouldAlertThrottling(ThermalState::fair, ThermalState::serious, kNow + 1799));
  EXPECT_TRUE(policy.shouldAlertThrottling(ThermalState::fair, ThermalState::serious, kNow + 1800));
}

TEST(AlertPolicyTest, NeitherSnoozesNorAppsStandInTheWayOfThrottling) {
  AlertPolicy policy(1800);
  policy.appsToAlert({"throttle"}, kNow);
  policy.snooze("throttle", kNow + 3600);
  EXPECT_TRUE(policy.shouldAlertThrottling(ThermalState::fair, ThermalState::serious, kNow));
}

}  // namespace
}  // namespace embrix
