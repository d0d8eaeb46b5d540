#include "model/auto_calm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Condition = CalmRule::Condition;

const std::vector<AutoCalm::Group> kGroups = {
    {.app = "Slack", .processes = {{1, "Slack"}, {2, "Slack Helper"}}},
    {.app = "Code", .processes = {{3, "node"}, {4, "SLACK"}}},
};

CalmRule rule(const std::string& name, Condition condition = Condition::always) {
  return {.id = CalmRule::freshID(), .name = name, .condition = condition};
}

TEST(AutoCalmTest, ARuleCatchesAWholeAppAndProcessesOfThatNameInOthers) {
  EXPECT_THAT(AutoCalm::targets({rule("slack")}, kGroups, false, false), ElementsAre(1, 2, 4));
  EXPECT_THAT(AutoCalm::targets({rule("Slack Helper")}, kGroups, false, false), ElementsAre(2));
  EXPECT_THAT(AutoCalm::targets({rule("Slac")}, kGroups, false, false), IsEmpty());
}

TEST(AutoCalmTest, NamesAreComparedWithoutRegardToCaseInEveryAlphabet) {
  const std::vector<AutoCalm::Group> groups = {{.app = "ÉTUDE", .processes = {{1, "x"}}}};
  EXPECT_THAT(AutoCalm::targets({rule("étude")}, groups, false, false), ElementsAre(1));
}

TEST(AutoCalmTest, RulesAddUp) {
  EXPECT_THAT(AutoCalm::targets({rule("node"), rule("Slack Helper")}, kGroups, false, false),
              ElementsAre(2, 3));
}

struct ConditionCase {
  std::string label;
  Condition condition;
  bool onBattery = false;
  bool hot = false;
  bool expected = false;
};

class ConditionRule : public testing::TestWithParam<ConditionCase> {};

TEST_P(ConditionRule, DecidesWhetherTheRuleIsActive) {
  const auto& [label, condition, onBattery, hot, expected] = GetParam();
  const auto targets = AutoCalm::targets({rule("node", condition)}, kGroups, onBattery, hot);
  EXPECT_EQ(!targets.empty(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    AutoCalmTest, ConditionRule,
    testing::Values(ConditionCase{"OnBattery", Condition::onBattery, true, false, true},
                    ConditionCase{"OnPower", Condition::onBattery, false, true, false},
                    ConditionCase{"WhenHot", Condition::whenHot, false, true, true},
                    ConditionCase{"WhenCool", Condition::whenHot, true, false, false},
                    ConditionCase{"Always", Condition::always, false, false, true}),
    [](const auto& test) { return test.param.label; });

TEST(AutoCalmTest, HotBeginsAtTheHotThresholdAndEndsBelowTheWarmOne) {
  EXPECT_FALSE(AutoCalm::isHot(LoadLevel::warm, false, false));
  EXPECT_TRUE(AutoCalm::isHot(LoadLevel::hot, false, false));
  EXPECT_TRUE(AutoCalm::isHot(LoadLevel::warm, false, true));
  EXPECT_FALSE(AutoCalm::isHot(LoadLevel::calm, false, true));
}

TEST(AutoCalmTest, AThrottledMachineIsHotAtAnyLevel) {
  EXPECT_TRUE(AutoCalm::isHot(LoadLevel::calm, true, false));
}

}  // namespace
}  // namespace embrix
