// The discharge session as it is told, step by step, with plain maps. What the real one is held
// against.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>

#include "frame/frame.h"
#include "records/discharge_session.h"

namespace embrix {

class SlowDischarge {
 public:
  struct Mark {
    double time = 0;
    std::optional<int> percent;
    std::optional<double> remainingWh;
  };
  struct Session {
    double start = 0;
    std::optional<int> startPercent;
    double lastTime = 0;
    double total = 0;
    std::map<std::string, double> energies;
    std::map<std::string, std::string> names;
    double asleepSeconds = 0;
    int asleepPercent = 0;
    double asleepWattHours = 0;
    std::optional<Mark> mark;
  };

  std::optional<Session> session;
  std::optional<bool> wasOnBattery;
  std::optional<double> pendingWake;

  void record(const Frame& frame, const Frame* previous, double totalWatts) {
    if (!frame.battery) return;
    const BatteryReading battery = *frame.battery;
    const bool onPower = battery.isCharging || battery.externalConnected;
    if (pendingWake) {
      const double woke = *pendingWake;
      pendingWake.reset();
      if (session) wake(woke, battery);
    }
    if (onPower) {
      wasOnBattery = false;
      return;
    }
    bool starts = false;
    if (wasOnBattery.has_value()) {
      starts = *wasOnBattery == false;
    } else if (session) {
      if (frame.date - session->lastTime >= 43'200) starts = true;
      if (session->startPercent.value_or(100) < battery.percent.value_or(0)) starts = true;
    }
    if (!session) starts = true;
    if (starts) {
      session = Session{};
      session->start = frame.date;
      session->lastTime = frame.date;
      session->startPercent = battery.percent;
    }
    wasOnBattery = true;
    if (previous != nullptr) add(frame, frame.date - previous->date, totalWatts);
  }

  bool tells(const std::optional<DischargeSession>& other) const {
    if (!session || !other) return session.has_value() == other.has_value();
    std::map<std::string, double> energies;
    for (const auto& [key, energy] : other->groupWattHours) energies[key.string()] = energy;
    std::map<std::string, std::string> names;
    for (const auto& [key, name] : other->groupNames) names[key.string()] = name.string();
    const auto& mark = other->sleepStart;
    const bool isSameMark = mark && session->mark
                                ? mark->time == session->mark->time &&
                                      mark->percent == session->mark->percent &&
                                      mark->remainingWh == session->mark->remainingWh
                                : mark.has_value() == session->mark.has_value();
    return isSameMark && other->start == session->start &&
           other->startPercent == session->startPercent && other->lastTime == session->lastTime &&
           other->totalWattHours == session->total && energies == session->energies &&
           names == session->names && other->asleepSeconds == session->asleepSeconds &&
           other->asleepPercent == session->asleepPercent &&
           other->asleepWattHours == session->asleepWattHours;
  }

 private:
  void wake(double woke, const BatteryReading& battery) {
    if (!session->mark) return;
    const Mark mark = *session->mark;
    session->mark.reset();
    if (woke > mark.time) session->asleepSeconds += woke - mark.time;
    if (mark.percent && battery.percent && *mark.percent > *battery.percent) {
      session->asleepPercent += *mark.percent - *battery.percent;
    }
    if (mark.remainingWh && battery.remainingWh && *mark.remainingWh > *battery.remainingWh) {
      session->asleepWattHours += *mark.remainingWh - *battery.remainingWh;
    }
    session->lastTime = woke;
  }

  void add(const Frame& frame, double dt, double totalWatts) {
    session->lastTime = frame.date;
    if (dt <= 0) return;
    const double d = std::min(dt, 30.0);
    session->total += totalWatts * d / 3600;
    for (std::size_t i = 0; i < frame.groups.size() && i < 40; ++i) {
      const AppGroup& group = frame.groups[i];
      if (group.watts < 0.02) continue;
      session->energies[group.identity.key.string()] += d * group.watts / 3600;
      session->names[group.identity.key.string()] = group.identity.name.string();
    }
  }
};

}  // namespace embrix
