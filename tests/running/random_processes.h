// Process tables that nobody would write by hand: parents that are missing, younger, in circles or
// the process itself, and every kind of process that the rules tell apart.
#pragma once

#include <utility>

#include <rapidcheck/gtest.h>

#include "facts.h"

namespace embrix {

inline rc::Gen<std::vector<ProcessFacts>> shuffled(std::vector<ProcessFacts> given) {
  return rc::gen::exec([given = std::move(given)] {
    auto table = given;
    for (std::size_t i = table.size(); i > 1; --i) {
      std::swap(table[i - 1], table[*rc::gen::inRange<std::size_t>(0, i)]);
    }
    return table;
  });
}

// Pids are unique; the order is random.
inline rc::Gen<std::vector<ProcessFacts>> processTables() {
  using Path = std::optional<std::string>;
  static const std::vector<std::string> kNames = {
      "node", "Node", "bun", "deno", "npm", "claude",      "Codex",   "python3",
      "ruby", "java", "adb", "foo",  "zsh", "launchd_sim", "OrbStack"};
  static const std::vector<Path> kPaths = {std::nullopt,
                                           "/opt/homebrew/bin/x",
                                           "/opt/homebrew/bin/x",
                                           "/Users/me/bin/x",
                                           "/usr/bin/x",
                                           "/bin/x",
                                           "/Applications/X.app/Contents/MacOS/x"};
  static const std::vector<std::vector<std::string>> kArguments = {
      {},
      {"x"},
      {"x", "a.js"},
      {"x", "a.js"},
      {"x", "-m", "b"},
      {"x", "GradleDaemon"},
      {"x", "rails server"},
      {"next-server (v1)"},
      {"x", "/Devices/3F2504E0-4F89-41D3-9A0C-0305E82C3301/data"}};
  static const std::vector<Path> kDirectories = {std::nullopt, "/Users/me", "/w/one", "/w/two",
                                                 "/w/.hidden"};
  static const std::vector<std::vector<int>> kPorts = {{}, {}, {3000}, {3000, 9229}, {80}, {5173}};
  static const std::vector<double> kUptimes = {3600, 3600, 3599.9, 5000, 9000.5, -1};
  static const std::vector<std::uint32_t> kUsers = {kUser, kUser, kUser, kUser, 0};

  return rc::gen::exec([] {
    using rc::gen::elementOf;
    const int count = *rc::gen::inRange(0, 60);
    // Few pids make many relations; a chain makes deep ones.
    const bool isChain = *rc::gen::inRange(0, 4) == 0;
    std::vector<ProcessFacts> table;
    for (std::int32_t pid = 1; pid <= count; ++pid) {
      Told told;
      told.pid = pid;
      told.ppid = isChain ? pid + 1 : *rc::gen::inRange(0, count + 2);
      told.path = isChain ? Path("/opt/homebrew/bin/x") : *elementOf(kPaths);
      told.arguments = *elementOf(kArguments);
      told.directory = *elementOf(kDirectories);
      told.ports = *elementOf(kPorts);
      told.uptime = isChain ? 3600 + pid : *elementOf(kUptimes);
      told.uid = isChain ? kUser : *elementOf(kUsers);
      const bool isLink = isChain && *rc::gen::inRange(0, 40) != 0;
      told.name = isLink ? "node" : *elementOf(kNames);
      table.push_back(facts(told));
    }
    return *shuffled(table);
  });
}

}  // namespace embrix
