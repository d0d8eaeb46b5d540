// Frames as the reports are tested on.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "frame/frame.h"

namespace embrix {

inline ProcessRow row(int pid, const std::string& name, double watts, double cpuPercent = 0) {
  ProcessRow made;
  made.pid = pid;
  made.name = name;
  made.watts = watts;
  made.cpuPercent = cpuPercent;
  return made;
}

inline AppGroup group(const std::string& name, std::vector<ProcessRow> rows) {
  AppGroup made;
  made.identity.key = "named:" + name;
  made.identity.name = name;
  for (const ProcessRow& each : rows) {
    made.watts += each.watts;
    made.cpuPercent += each.cpuPercent;
  }
  made.processes = std::move(rows);
  return made;
}

// Two groups, two fans, a battery and a temperature.
inline Frame wholeFrame() {
  Frame frame;
  frame.groups = {group("Xcode", {row(501, "swift/frontend", 5, 98.5), row(502, "a", 0),
                                  row(503, "b", 0.001), row(504, "clang", 4, 3.25)}),
                  group("Idle", {row(600, "idle", 0)})};
  frame.groups[0].watts = 9.07;
  frame.groups[0].cpuPercent = 182.05;
  frame.battery = BatteryReading{.systemWatts = 12.5};
  frame.temperature = 61.25;
  frame.thermalState = ThermalState::fair;
  frame.fans = {{1200.6, 6000}, {1349.5, 6500}};
  return frame;
}

}  // namespace embrix
