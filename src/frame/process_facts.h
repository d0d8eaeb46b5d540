// The slow facts of one process of the user: what a scan needs and a tick does not. They stand in
// several rows of every frame, so their texts are shared and a copy costs next to nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/shared_text.h"
#include "base/shared_texts.h"

namespace embrix {

struct ProcessFacts {
  SharedText id;  // the decimal pid, a hyphen, the decimal start time
  std::int32_t pid = 0;
  std::int32_t ppid = 0;
  std::uint32_t uid = 0;
  SharedText name;
  std::optional<SharedText> path;
  SharedTexts arguments;                // the program first; empty if unreadable
  std::optional<SharedText> directory;  // current working directory
  std::vector<int> ports;               // listening TCP ports, unique, ascending
  double uptime = 0;                    // seconds
  std::vector<int> exposedPorts;        // those of ports that other machines can reach

  bool operator==(const ProcessFacts&) const = default;
};

}  // namespace embrix
