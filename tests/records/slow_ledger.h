// The day's ledger and the archive as they are told, step by step, with plain maps and no thought
// of speed. What the real ones are held against.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "frame/frame.h"
#include "records/archive.h"
#include "records/day_ledger.h"

namespace embrix {

struct SlowLedger {
  std::string day;
  double totalWattHours = 0;
  std::map<std::string, double> groupWattHours;
  std::map<std::string, std::string> groupNames;
  double hotSeconds = 0;
  int spells = 0;
  double longestSpellSeconds = 0;
  double peakWatts = 0;
  std::optional<double> peakTime;
  std::optional<std::string> peakLabel;
  double spellSeconds = 0;

  void record(const std::string& key, const Frame& frame, const Frame* previous, double total,
              double warm, const std::optional<std::string>& label) {
    if (key != day) {
      *this = SlowLedger{};
      day = key;
    }
    if (previous == nullptr) return;
    double dt = frame.date - previous->date;
    if (dt < 0) dt = 0;
    if (dt > 30) dt = 30;
    totalWattHours = totalWattHours + total * dt / 3600;
    for (const AppGroup& group : frame.groups) {
      if (group.watts < 0.05) continue;
      const std::string name = group.identity.key.string();
      groupWattHours[name] = groupWattHours[name] + dt * group.watts / 3600;
      groupNames[name] = group.identity.name.string();
    }
    if (peakWatts < total) {
      peakWatts = total;
      peakTime = frame.date;
      peakLabel = label;
    }
    if (warm > total) {
      spellSeconds = 0;
      return;
    }
    hotSeconds = hotSeconds + dt;
    const double before = spellSeconds;
    spellSeconds = spellSeconds + dt;
    if (before < 30 && spellSeconds >= 30) spells = spells + 1;
    if (spellSeconds > longestSpellSeconds) longestSpellSeconds = spellSeconds;
  }

  // Whether the ledger tells the same, to the last bit.
  bool tells(const DayLedger& ledger) const {
    std::map<std::string, double> energies;
    for (const auto& [key, energy] : ledger.groupWattHours) energies[key.string()] = energy;
    std::map<std::string, std::string> names;
    for (const auto& [key, name] : ledger.groupNames) names[key.string()] = name.string();
    const auto label = ledger.peakLabel ? std::optional(ledger.peakLabel->string()) : std::nullopt;
    return ledger.day == day && ledger.totalWattHours == totalWattHours &&
           energies == groupWattHours && names == groupNames && ledger.hotSeconds == hotSeconds &&
           ledger.spells == spells && ledger.longestSpellSeconds == longestSpellSeconds &&
           ledger.peakWatts == peakWatts && ledger.peakTime == peakTime && label == peakLabel &&
           ledger.spellSeconds == spellSeconds;
  }
};

struct SlowArchive {
  struct Day {
    double wattHours = 0;
    std::map<std::string, double> apps;
    std::map<std::string, std::string> names;
    std::optional<int> health;
    std::optional<int> cycles;
    std::optional<double> fullWh;
  };
  std::map<std::string, Day> days;

  void record(const SlowLedger& ledger, const std::optional<BatteryReading>& battery) {
    std::vector<std::pair<double, std::string>> sorted;
    for (const auto& [key, energy] : ledger.groupWattHours) sorted.emplace_back(-energy, key);
    std::sort(sorted.begin(), sorted.end());
    if (sorted.size() > 40) sorted.resize(40);

    const bool isNew = days.count(ledger.day) == 0;
    const Day old = days[ledger.day];
    Day& day = days[ledger.day] = Day{};
    day.wattHours = ledger.totalWattHours;
    for (const auto& [energy, key] : sorted) {
      day.apps[key] = -energy;
      day.names[key] = ledger.groupNames.at(key);
    }
    if (battery) {
      day.health = battery->healthPercent;
      day.cycles = battery->cycleCount;
      day.fullWh = battery->fullWh;
    }
    if (!day.health) day.health = old.health;
    if (!day.cycles) day.cycles = old.cycles;
    if (!day.fullWh) day.fullWh = old.fullWh;
    if (isNew && days.size() > 400) days.erase(days.begin());
  }

  bool tells(const Archive& archive) const {
    if (archive.days().size() != days.size()) return false;
    auto next = days.begin();
    for (const DailyRecord& record : archive.days()) {
      const auto& [name, day] = *next++;
      std::map<std::string, double> apps;
      for (const auto& [key, energy] : record.appWattHours) apps[key.string()] = energy;
      std::map<std::string, std::string> names;
      for (const auto& [key, text] : record.appNames) names[key.string()] = text.string();
      if (record.day != name || record.wattHours != day.wattHours || apps != day.apps ||
          names != day.names || record.health != day.health || record.cycles != day.cycles ||
          record.fullWh != day.fullWh) {
        return false;
      }
    }
    return true;
  }
};

}  // namespace embrix
