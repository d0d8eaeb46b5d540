#include "surfaces/calm_rule_menu.h"

#include <array>

#include <fmt/format.h>

namespace embrix {

namespace {

constexpr std::string_view kPrefix = "rule-";

struct Toggle {
  CalmRule::Condition condition;
  std::string_view label;
};

constexpr std::array kToggles = {
    Toggle{CalmRule::Condition::onBattery, "On battery"},
    Toggle{CalmRule::Condition::whenHot, "When hot"},
    Toggle{CalmRule::Condition::always, "Always"},
};

}  // namespace

MenuItem CalmRuleMenu::make(const PowerModel& model, const std::string& appName) {
  const auto rule = model.calmRuleForApp(appName);
  MenuItem menu{.label = fmt::format("Auto-Calm {}", appName)};
  for (const Toggle& toggle : kToggles) {
    menu.items.push_back(
        {.action = fmt::format("{}{}", kPrefix, CalmRule::conditionWord(toggle.condition)),
         .label = std::string(toggle.label),
         .shortcut = {},
         .isOn = rule && rule->condition == toggle.condition,
         .items = {}});
  }
  return menu;
}

bool CalmRuleMenu::choose(PowerModel& model, const std::string& appName, std::string_view action) {
  if (!action.starts_with(kPrefix)) return false;
  const auto condition = CalmRule::conditionOf(action.substr(kPrefix.size()));
  if (!condition) return false;
  const auto rule = model.calmRuleForApp(appName);
  if (rule && rule->condition == *condition) {
    model.removeCalmRule(*rule);
  } else {
    model.addCalmRule(appName, *condition);
  }
  return true;
}

}  // namespace embrix
