#pragma once

#include <string>
#include <vector>

namespace embrix {

// What the mark on a server that other machines can reach has to say.
struct ExposedBadge {
  // The help text for the ports that are exposed (ProcessFacts::exposedPorts).
  static std::string explanation(const std::vector<int>& ports);
};

}  // namespace embrix
