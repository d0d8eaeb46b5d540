// Hashes of the records that are compared by value: equal records have equal hashes, and every
// field counts, so that a changed row can be told from an unchanged one by either. They hold for
// one run of the program and are never written down.
#pragma once

#include <cstddef>
#include <functional>

#include "frame/app_group.h"
#include "frame/battery_reading.h"
#include "frame/process_sample.h"

namespace embrix {

// The hash of values in this order.
template <typename... Values>
std::size_t hashOfAll(const Values&... values) {
  std::size_t hash = 0;
  // A bit more than a sum, so that two values that change places give another hash.
  ((hash = hash * 31 + std::hash<Values>{}(values)), ...);
  return hash;
}

}  // namespace embrix

template <>
struct std::hash<embrix::AppInfo> {
  std::size_t operator()(const embrix::AppInfo& app) const noexcept {
    return embrix::hashOfAll(app.name, app.bundleID, app.bundlePath);
  }
};

template <>
struct std::hash<embrix::GroupIdentity> {
  std::size_t operator()(const embrix::GroupIdentity& identity) const noexcept {
    return embrix::hashOfAll(identity.key, identity.name, identity.rootPID, identity.app);
  }
};

template <>
struct std::hash<embrix::ProcessRow> {
  std::size_t operator()(const embrix::ProcessRow& row) const noexcept {
    return embrix::hashOfAll(row.id, row.pid, row.uid, row.name, row.path, row.watts,
                             row.cpuPercent, row.wakeupsPerSecond, row.memoryBytes, row.gpuWatts);
  }
};

template <>
struct std::hash<embrix::AppGroup> {
  std::size_t operator()(const embrix::AppGroup& group) const noexcept {
    std::size_t rows = group.processes.size();
    for (const embrix::ProcessRow& row : group.processes) rows = embrix::hashOfAll(rows, row);
    return embrix::hashOfAll(group.identity, group.watts, group.cpuPercent, group.wakeupsPerSecond,
                             rows);
  }
};

template <>
struct std::hash<embrix::ProcessSample> {
  std::size_t operator()(const embrix::ProcessSample& sample) const noexcept {
    return embrix::hashOfAll(sample.pid, sample.ppid, sample.uid, sample.name, sample.path,
                             sample.startTime, sample.energyNJ, sample.cpuNS, sample.wakeups,
                             sample.footprint, sample.id);
  }
};

template <>
struct std::hash<embrix::BatteryReading> {
  std::size_t operator()(const embrix::BatteryReading& battery) const noexcept {
    return embrix::hashOfAll(battery.systemWatts, battery.percent, battery.minutesRemaining,
                             battery.isCharging, battery.externalConnected, battery.healthPercent,
                             battery.cycleCount, battery.remainingWh, battery.fullWh);
  }
};
