#include "running/exposed_badge.h"

#include <fmt/format.h>

namespace embrix {

std::string ExposedBadge::explanation(const std::vector<int>& ports) {
  std::string addresses;
  for (const int port : ports) {
    fmt::format_to(std::back_inserter(addresses), "{}:{}", addresses.empty() ? "" : ", ", port);
  }
  return fmt::format(
      "Listening on every network address ({}), so anyone on the same Wi-Fi can reach it, not just "
      "this Mac. Bind it to 127.0.0.1 to keep it private.",
      addresses);
}

}  // namespace embrix
