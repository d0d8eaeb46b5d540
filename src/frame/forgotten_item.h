#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/process_facts.h"

namespace embrix {

// One row of what the user left running: a tool with its processes.
struct ForgottenItem {
  std::string title;                         // "npm run dev", "Gradle daemon"
  std::optional<std::string> project;        // the project folder's name
  std::string symbol;                        // name of the row's symbol
  std::vector<int> ports;                    // of the whole group, unique, ascending
  double uptime = 0;                         // seconds
  ProcessFacts root;                         // what a stop acts on first
  std::vector<ProcessFacts> members;         // root first, then the others by ascending pid
  std::optional<std::string> simulatorUDID;  // of a simulator's row only

  const SharedText& id() const { return root.id; }

  bool operator==(const ForgottenItem&) const = default;
};

}  // namespace embrix
