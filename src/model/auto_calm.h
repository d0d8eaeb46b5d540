// Which processes the user's rules want calmed at a moment. Plain functions; any thread.
#pragma once

#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "model/calm_rule.h"
#include "model/load_level.h"

namespace embrix {

struct AutoCalm {
  // Names are views, good for the call.
  struct Process {
    std::int32_t pid = 0;
    std::string_view name;
  };
  struct Group {
    std::string_view app;
    std::vector<Process> processes;
  };

  static bool isActive(const CalmRule& rule, bool onBattery, bool hot);

  // The pids of all processes whose app, or whose own name, an active rule names.
  static std::set<std::int32_t> targets(const std::vector<CalmRule>& rules,
                                        const std::vector<Group>& groups, bool onBattery, bool hot);

  // Whether the machine counts as hot for the rules: from the hot threshold on, and then until it
  // has fallen below the warm one, so that rules do not flap. A machine that the system slows down
  // is hot at any level.
  static bool isHot(LoadLevel level, bool isThrottled, bool wasHot);
};

}  // namespace embrix
