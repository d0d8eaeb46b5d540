// The slow facts of one process of the user: what a scan needs and a tick does not.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

struct ProcessFacts {
  std::string id;  // the decimal pid, a hyphen, the decimal start time
  std::int32_t pid = 0;
  std::int32_t ppid = 0;
  std::uint32_t uid = 0;
  std::string name;
  std::optional<std::string> path;
  std::vector<std::string> arguments;    // the program first; empty if unreadable
  std::optional<std::string> directory;  // current working directory
  std::vector<int> ports;                // listening TCP ports, unique, ascending
  double uptime = 0;                     // seconds
  std::vector<int> exposedPorts;         // those of ports that other machines can reach

  bool operator==(const ProcessFacts&) const = default;
};

}  // namespace embrix
