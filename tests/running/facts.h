// Processes for the tests of the rules, written down in one line each.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/forgotten_item.h"
#include "frame/process_facts.h"

namespace embrix {

constexpr std::uint32_t kUser = 501;
constexpr std::string_view kHome = "/Users/me";

struct Told {
  std::int32_t pid = 0;
  std::int32_t ppid = 1;
  std::optional<std::string> path = std::nullopt;
  std::vector<std::string> arguments = {};
  std::optional<std::string> directory = std::nullopt;
  std::vector<int> ports = {};
  double uptime = 7200;
  std::uint32_t uid = kUser;
  std::optional<std::string> name = std::nullopt;  // the path's last piece when absent
};

inline ProcessFacts facts(Told told) {
  ProcessFacts facts;
  facts.id = std::to_string(told.pid) + "-1700000000";
  facts.pid = told.pid;
  facts.ppid = told.ppid;
  facts.uid = told.uid;
  if (told.name) {
    facts.name = *told.name;
  } else if (told.path) {
    facts.name = told.path->substr(told.path->rfind('/') + 1);
  }
  facts.path = std::move(told.path);
  facts.arguments = std::move(told.arguments);
  facts.directory = std::move(told.directory);
  facts.ports = std::move(told.ports);
  facts.uptime = told.uptime;
  return facts;
}

// A runtime from a package manager, a tool in each place where it is allowed.
inline ProcessFacts node(std::int32_t pid, std::int32_t ppid, std::string script) {
  return facts({.pid = pid,
                .ppid = ppid,
                .path = "/opt/homebrew/bin/node",
                .arguments = {"node", std::move(script)}});
}

inline std::vector<std::int32_t> pidsOf(const std::vector<ProcessFacts>& processes) {
  std::vector<std::int32_t> pids;
  for (const ProcessFacts& process : processes) pids.push_back(process.pid);
  return pids;
}

inline std::vector<std::string> titlesOf(const std::vector<ForgottenItem>& items) {
  std::vector<std::string> titles;
  for (const ForgottenItem& item : items) titles.push_back(item.title);
  return titles;
}

}  // namespace embrix
