// The user's rules: which processes they want calmed now, and the letting go of the others.

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/text.h"
#include "model/auto_calm.h"
#include "model/power_model.h"
#include "model/setting_keys.h"

namespace embrix {

namespace {

std::set<std::int32_t> pidsOf(const std::map<std::int32_t, std::optional<std::int64_t>>& starts) {
  std::set<std::int32_t> pids;
  for (const auto& [pid, start] : starts) pids.insert(pids.end(), pid);
  return pids;
}

}  // namespace

void PowerModel::pruneCalmed() {
  if (calmed_->empty()) return;
  calmedStarts_ = living(calmedStarts_);
  calmed_ = pidsOf(calmedStarts_);
}

void PowerModel::applyCalmRules() {
  const Changes changes(*this);
  wasHot_ = AutoCalm::isHot(loadLevel(), isThrottled(), wasHot_);
  if (calmRules_->empty() && autoCalmed_->empty() && autoCalmOverrides_.empty()) return;
  autoCalmOverrides_ = living(autoCalmOverrides_);  // one ends with its process
  const Pids wanted = wantedByRules(wasHot_);
  letGo(wanted);
  calmWanted(wanted);
}

PowerModel::Pids PowerModel::wantedByRules(bool isHotForRules) const {
  const bool onBattery = isOnBattery();
  const auto& rules = *calmRules_;
  if (std::none_of(rules.begin(), rules.end(), [&](const CalmRule& rule) {
        return AutoCalm::isActive(rule, onBattery, isHotForRules);
      })) {
    return {};
  }
  std::vector<AutoCalm::Group> groups;
  groups.reserve((*frame_)->groups.size());
  for (const AppGroup& group : (*frame_)->groups) {
    groups.push_back({.app = group.identity.name, .processes = {}});
    for (const ProcessRow& row : group.processes) {
      if (row.uid == uid()) groups.back().processes.push_back({.pid = row.pid, .name = row.name});
    }
  }
  Pids wanted = AutoCalm::targets(rules, groups, onBattery, isHotForRules);
  for (const auto& [pid, start] : autoCalmOverrides_) wanted.erase(pid);
  return wanted;
}

// Gives back its speed to what a rule calmed and none wants calmed any more.
void PowerModel::letGo(const Pids& wanted) {
  Pids stillWanted;
  std::set_intersection(autoCalmed_->begin(), autoCalmed_->end(), wanted.begin(), wanted.end(),
                        std::inserter(stillWanted, stillWanted.end()));
  if (stillWanted.size() == autoCalmed_->size()) return;
  for (const auto& [pid, start] : living(calmedStarts_)) {
    if (!autoCalmed_->contains(pid) || stillWanted.contains(pid)) continue;
    restoreProcess(pid);
    forgetCalmed(pid);
  }
  autoCalmed_ = std::move(stillWanted);
}

// What the user calmed by hand stays the user's: no rule lets go of it later.
void PowerModel::calmWanted(const Pids& wanted) {
  if (std::includes(calmed_->begin(), calmed_->end(), wanted.begin(), wanted.end())) return;
  for (const AppGroup& group : (*frame_)->groups) {
    for (const ProcessRow& row : group.processes) {
      if (row.uid != uid() || !wanted.contains(row.pid) || calmed_->contains(row.pid)) continue;
      // A failure is not told: it is tried again at every frame.
      if (calmProcess(row) != 0) continue;
      autoCalmed_.change([&](Pids& autoCalmed) { return autoCalmed.insert(row.pid).second; });
    }
  }
}

void PowerModel::addCalmRule(const std::string& name, CalmRule::Condition condition) {
  const Changes changes(*this);
  calmRules_.change([&](std::vector<CalmRule>& rules) {
    const auto existing = std::find_if(rules.begin(), rules.end(), [&](const CalmRule& rule) {
      return Text::equalsIgnoringCase(rule.name, name);
    });
    if (existing == rules.end()) {
      rules.push_back({.id = CalmRule::freshID(), .name = name, .condition = condition});
      return true;
    }
    return std::exchange(existing->condition, condition) != condition;
  });
  saveCalmRules();
}

void PowerModel::updateCalmRule(const CalmRule& rule) {
  const Changes changes(*this);
  std::vector<CalmRule> rules = *calmRules_;
  for (CalmRule& each : rules) {
    if (each.id == rule.id) each = rule;
  }
  calmRules_ = std::move(rules);
  saveCalmRules();
}

void PowerModel::removeCalmRule(const CalmRule& rule) {
  const Changes changes(*this);
  calmRules_.change([&](std::vector<CalmRule>& rules) {
    return std::erase_if(rules, [&](const CalmRule& each) { return each.id == rule.id; }) > 0;
  });
  saveCalmRules();
}

std::optional<CalmRule> PowerModel::calmRuleForApp(std::string_view name) const {
  for (const CalmRule& rule : *calmRules_) {
    if (Text::equalsIgnoringCase(rule.name, name)) return rule;
  }
  return std::nullopt;
}

void PowerModel::saveCalmRules() {
  ports_.defaults.set(SettingKeys::kCalmRules, SettingData{CalmRule::encode(*calmRules_)});
  if (*frame_) applyCalmRules();
}

}  // namespace embrix
