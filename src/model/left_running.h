// What was left running, as rows that the user can act on. Plain functions; any thread.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "frame/frame.h"
#include "running/forgotten_row.h"

namespace embrix {

struct LeftRunning {
  // Minutes that stopping so many watts would win.
  using Gain = std::function<std::optional<double>(double watts)>;

  // What an item is and where it lives, whatever its pid: one that was kept and restarted stays
  // kept.
  static std::string keptKey(const ForgottenItem& item);

  // The items of the frame that are not kept and whose root still runs; most watts first, then the
  // oldest first.
  static std::vector<ForgottenRow> rows(const Frame& frame, const std::set<std::string>& kept,
                                        const Gain& gain);
};

}  // namespace embrix
