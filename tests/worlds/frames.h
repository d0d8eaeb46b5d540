// Frames as the tests of the model write them down.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "frame/frame.h"
#include "frame/process_sample.h"

namespace embrix {

inline constexpr std::uint32_t kMe = 501;
inline constexpr std::uint32_t kRoot = 0;
inline constexpr std::int64_t kStarted = 1'749'000'000;  // when processes were started

inline ProcessRow row(std::int32_t pid, const std::string& name, double watts,
                      std::uint32_t uid = kMe, std::int64_t started = kStarted) {
  ProcessRow row;
  row.id = processID(pid, static_cast<std::uint64_t>(started));
  row.pid = pid;
  row.uid = uid;
  row.name = name;
  row.watts = watts;
  row.cpuPercent = watts * 10;
  row.memoryBytes = 1 << 20;
  return row;
}

inline AppGroup group(const std::string& key, const std::string& name,
                      std::vector<ProcessRow> rows) {
  AppGroup group;
  group.identity = {.key = key, .name = name, .rootPID = 0, .app = {}};
  for (const ProcessRow& each : rows) {
    group.watts += each.watts;
    group.cpuPercent += each.cpuPercent;
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& a, const auto& b) { return a.watts > b.watts; });
  group.processes = std::move(rows);
  return group;
}

// A group of one process that is named like it; the key is the name in front of ".app".
inline AppGroup app(const std::string& name, double watts, std::int32_t pid = 100) {
  return group(name + ".app", name, {row(pid, name, watts)});
}

inline Frame frameAt(double date, std::vector<AppGroup> groups = {}) {
  Frame frame;
  frame.date = date;
  std::stable_sort(groups.begin(), groups.end(),
                   [](const auto& a, const auto& b) { return a.watts > b.watts; });
  frame.groups = std::move(groups);
  return frame;
}

inline BatteryReading onBattery(int percent, double remainingWh = 50) {
  BatteryReading battery;
  battery.percent = percent;
  battery.remainingWh = remainingWh;
  battery.fullWh = 70;
  return battery;
}

inline BatteryReading onAdapter(int percent) {
  BatteryReading battery = onBattery(percent);
  battery.externalConnected = true;
  return battery;
}

inline ProcessFacts factsOf(const ProcessRow& row) {
  ProcessFacts facts;
  facts.id = row.id;
  facts.pid = row.pid;
  facts.uid = row.uid;
  facts.name = row.name.string();
  return facts;
}

// What was left running: those processes, the first of them at its root.
inline ForgottenItem forgotten(const std::string& title, const std::vector<ProcessRow>& rows,
                               double uptime = 7200) {
  ForgottenItem item;
  item.title = title;
  item.uptime = uptime;
  for (const ProcessRow& each : rows) item.members.push_back(factsOf(each));
  item.root = item.members.front();
  return item;
}

inline LocalServer server(const std::string& title, const ProcessRow& row) {
  LocalServer server;
  server.title = title;
  server.process = factsOf(row);
  return server;
}

}  // namespace embrix
