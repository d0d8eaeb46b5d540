#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/process_facts.h"

namespace embrix {

// One process of the user that listens on TCP ports.
struct LocalServer {
  std::string title;
  std::optional<std::string> project;  // name of its working folder's project
  std::string symbol;                  // name of the row's symbol
  std::vector<int> ports;              // unique, ascending
  ProcessFacts process;

  const SharedText& id() const { return process.id; }

  // "http://localhost:" and the first port, whatever interface it listens on; absent without ports.
  std::optional<std::string> url() const;

  bool operator==(const LocalServer&) const = default;
};

}  // namespace embrix
