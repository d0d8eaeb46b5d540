// What the tests of the popover and of its cards write down in frames.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "surfaces/menu_item.h"
#include "worlds/model_world.h"

namespace embrix {

inline constexpr std::uint64_t kGigabyte = 1ULL << 30;

inline ProcessRow heavyRow(std::int32_t pid, const std::string& name, std::uint64_t bytes) {
  ProcessRow heavy = row(pid, name, 0.1);
  heavy.memoryBytes = bytes;
  return heavy;
}

// A frame in which so many things were left running; the first holds the most memory.
inline Frame frameWithForgotten(double date, int count) {
  Frame frame = frameAt(date);
  std::vector<ProcessRow> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back(heavyRow(100 + i, "tool", static_cast<std::uint64_t>(count - i) * kGigabyte));
    frame.forgotten.push_back(forgotten("tool " + std::to_string(i), {rows.back()}));
  }
  if (!rows.empty()) frame.groups.push_back(group("tools", "Tools", rows));
  return frame;
}

inline LocalServer devServer(const std::string& project, std::int32_t pid, int port) {
  LocalServer made = server("vite dev", row(pid, "node", 0.1));
  made.project = project;
  made.symbol = "server.rack";
  made.ports = {port};
  made.process.uptime = 7200;
  return made;
}

inline LocalServer toolServer(std::int32_t pid) {
  LocalServer made = server("Android debug bridge (adb)", row(pid, "adb", 0.1));
  made.symbol = "cable.connector";
  made.ports = {5037};
  return made;
}

inline std::vector<std::string> labelsOf(const std::vector<MenuItem>& menu) {
  std::vector<std::string> labels;
  labels.reserve(menu.size());
  for (const MenuItem& item : menu) labels.push_back(item.label);
  return labels;
}

}  // namespace embrix
