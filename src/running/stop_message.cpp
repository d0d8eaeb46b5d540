#include "running/stop_message.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/format.h"

namespace embrix {

std::string StopMessage::forgotten(const ForgottenRow& row) {
  const std::string age = Format::age(row.item.uptime);
  const std::string memory = Format::memoryShort(row.memoryBytes());
  if (row.item.simulatorUDID) {
    return fmt::format(
        "It's been booted for {} and frees {}. Apps running in it quit, like shutting it down in "
        "Simulator.",
        age, memory);
  }
  return fmt::format("It's been running for {} and frees {}. Anything unsaved in it is lost.", age,
                     memory);
}

std::string StopMessage::all(const std::vector<ForgottenRow>& rows) {
  return fmt::format(
      "This frees {} of memory. Anything unsaved in them is lost. Pin anything you still need to "
      "keep it.",
      Format::memoryShort(ForgottenRow::memoryBytes(rows)));
}

std::string StopMessage::server(const LocalServer& server) {
  if (server.ports.empty()) return "Anything unsaved in it is lost.";
  constexpr std::size_t kNamedPorts = 3;
  std::string addresses;
  for (std::size_t i = 0; i < std::min(server.ports.size(), kNamedPorts); ++i) {
    fmt::format_to(std::back_inserter(addresses), "{}localhost:{}", i == 0 ? "" : ", ",
                   server.ports[i]);
  }
  return addresses + " will stop responding. Anything unsaved in it is lost.";
}

}  // namespace embrix
