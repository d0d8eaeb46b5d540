#include "model/auto_calm.h"

#include <algorithm>

#include "base/text.h"

namespace embrix {

namespace {

bool isNamed(const std::vector<std::string_view>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view ruled) { return Text::equalsIgnoringCase(ruled, name); });
}

}  // namespace

bool AutoCalm::isActive(const CalmRule& rule, bool onBattery, bool hot) {
  switch (rule.condition) {
    case CalmRule::Condition::onBattery:
      return onBattery;
    case CalmRule::Condition::whenHot:
      return hot;
    case CalmRule::Condition::always:
      return true;
  }
  return false;
}

std::set<std::int32_t> AutoCalm::targets(const std::vector<CalmRule>& rules,
                                         const std::vector<Group>& groups, bool onBattery,
                                         bool hot) {
  std::vector<std::string_view> names;
  for (const CalmRule& rule : rules) {
    if (isActive(rule, onBattery, hot)) names.emplace_back(rule.name);
  }
  if (names.empty()) return {};

  std::set<std::int32_t> pids;
  for (const Group& group : groups) {
    const bool wholeApp = isNamed(names, group.app);
    for (const Process& process : group.processes) {
      if (wholeApp || isNamed(names, process.name)) pids.insert(process.pid);
    }
  }
  return pids;
}

bool AutoCalm::isHot(LoadLevel level, bool isThrottled, bool wasHot) {
  if (isThrottled || level == LoadLevel::hot) return true;
  return level == LoadLevel::warm && wasHot;
}

}  // namespace embrix
