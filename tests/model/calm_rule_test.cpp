#include "model/calm_rule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "base/json.h"

namespace embrix {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;

constexpr const char* kID = "0F1E2D3C-4B5A-4968-8776-655443322110";

std::string ruleJSON(const std::string& fields) {
  return R"([{"id":"0F1E2D3C-4B5A-4968-8776-655443322110","name":"Slack","condition":"always"},{)" +
         fields + "}]";
}

TEST(CalmRuleTest, RulesComeBackInTheirOrder) {
  const std::vector<CalmRule> rules = {
      {.id = CalmRule::freshID(), .name = "Slack", .condition = CalmRule::Condition::whenHot},
      {.id = CalmRule::freshID(), .name = "", .condition = CalmRule::Condition::always},
      {.id = CalmRule::freshID(), .name = "été", .condition = CalmRule::Condition::onBattery}};
  EXPECT_EQ(CalmRule::decode(CalmRule::encode(rules)), rules);
  EXPECT_THAT(CalmRule::decode(CalmRule::encode({})), IsEmpty());
}

TEST(CalmRuleTest, TheJSONIsAnArrayOfTheThreeFields) {
  const auto json = parseJson(
      CalmRule::encode({{.id = kID, .name = "Slack", .condition = CalmRule::Condition::whenHot}}));
  ASSERT_TRUE(json.has_value());
  EXPECT_EQ(*json, Json::parse(R"([{"id":"0F1E2D3C-4B5A-4968-8776-655443322110",)"
                               R"("name":"Slack","condition":"whenHot"}])"));
}

TEST(CalmRuleTest, ANameThatIsNoUTF8CostsNoRule) {
  const auto rules = CalmRule::decode(CalmRule::encode({{.id = kID, .name = "a\xff"}}));
  ASSERT_EQ(rules.size(), 1U);
  EXPECT_EQ(rules[0].name, "a\uFFFD");
}

struct DecodingCase {
  std::string label;
  std::string json;
  std::size_t rules = 0;
};

class DecodingRule : public testing::TestWithParam<DecodingCase> {};

TEST_P(DecodingRule, TakesAllRulesOrNone) {
  EXPECT_EQ(CalmRule::decode(GetParam().json).size(), GetParam().rules);
}

INSTANTIATE_TEST_SUITE_P(
    CalmRuleTest, DecodingRule,
    testing::Values(
        DecodingCase{"NoBytes", "", 0}, DecodingCase{"NoArray", "{}", 0},
        DecodingCase{"NoRecords", "[1]", 0},
        DecodingCase{"AnotherField",
                     ruleJSON(R"("id":"0f1e2d3c-4b5a-4968-8776-655443322110","name":"x",)"
                              R"("condition":"whenHot","since":5)"),
                     2},
        DecodingCase{"NoID", ruleJSON(R"("name":"x","condition":"always")"), 0},
        DecodingCase{"AnIDThatIsNone", ruleJSON(R"("id":"1","name":"x","condition":"always")"), 0},
        DecodingCase{"NoName",
                     ruleJSON(R"("id":"0F1E2D3C-4B5A-4968-8776-655443322110",)"
                              R"("condition":"always")"),
                     0},
        DecodingCase{"AnUnknownCondition",
                     ruleJSON(R"("id":"0F1E2D3C-4B5A-4968-8776-655443322110","name":"x",)"
                              R"("condition":"never")"),
                     0},
        DecodingCase{"Truncated", R"([{"id":"0F1E2D3C-4B5A)", 0}),
    [](const auto& test) { return test.param.label; });

TEST(CalmRuleTest, FreshIDsAreRandomUUIDs) {
  std::set<std::string> ids;
  for (int i = 0; i < 100; ++i) {
    const std::string id = CalmRule::freshID();
    EXPECT_THAT(id, MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                 "[0-9A-F]{12}"));
    ids.insert(id);
  }
  EXPECT_EQ(ids.size(), 100U);
}

}  // namespace
}  // namespace embrix
