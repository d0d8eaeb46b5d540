// Small records for the tests, with every field set or every optional one left out.
#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history_point.h"
#include "records/power_baseline.h"

namespace embrix {

inline SharedMap<double> wattsOf(std::initializer_list<std::pair<std::string_view, double>> list) {
  std::vector<SharedMap<double>::Entry> entries;
  entries.reserve(list.size());
  for (const auto& [key, watts] : list) entries.push_back({SharedText(key), watts});
  return SharedMap<double>(std::move(entries));
}

inline SharedMap<SharedText> namesOf(
    std::initializer_list<std::pair<std::string_view, std::string_view>> list) {
  std::vector<SharedMap<SharedText>::Entry> entries;
  entries.reserve(list.size());
  for (const auto& [key, name] : list) entries.push_back({SharedText(key), SharedText(name)});
  return SharedMap<SharedText>(std::move(entries));
}

inline HistoryPoint fullPoint() {
  return {.time = 1'750'000'000.125,
          .systemWatts = 12.5,
          .groupWatts = wattsOf({{"com.example.browser", 4.75}, {"named:Vite", 0.05}}),
          .temperature = 61.5,
          .cpuPercent = 182.25,
          .label = SharedText("Browser")};
}

inline HistoryPoint barePoint() {
  return {.time = 1'750'000'002, .groupWatts = {}, .cpuPercent = 0, .label = {}};
}

inline DayLedger fullLedger() {
  DayLedger ledger = DayLedger::fresh("2026-03-02");
  ledger.totalWattHours = 101.5;
  ledger.groupWattHours[SharedText("com.example.browser")] = 40.25;
  ledger.groupWattHours[SharedText("/usr/bin/clang \"x\"\\")] = 0.1;
  ledger.groupNames[SharedText("com.example.browser")] = SharedText("Browser");
  ledger.groupNames[SharedText("/usr/bin/clang \"x\"\\")] = SharedText("clang\t\n\x01");
  ledger.hotSeconds = 754.5;
  ledger.spells = 3;
  ledger.longestSpellSeconds = 322.125;
  ledger.peakWatts = 41.75;
  ledger.peakTime = 1'750'000'000.5;
  ledger.peakLabel = SharedText("Zoë's build ☕");
  ledger.spellSeconds = 12;
  return ledger;
}

inline DailyRecord fullDay(std::string_view day = "2026-03-01") {
  return {.day = std::string(day),
          .wattHours = 250.75,
          .appWattHours = wattsOf({{"com.example.browser", 99.5}, {"named:Vite", 1e-9}}),
          .appNames = namesOf({{"com.example.browser", "Browser"}, {"named:Vite", "Vite"}}),
          .health = 91,
          .cycles = 312,
          .fullWh = 68.5};
}

inline DailyRecord bareDay(std::string_view day = "2026-03-02") {
  DailyRecord record;
  record.day = day;
  return record;
}

inline DischargeSession fullSession() {
  DischargeSession session = DischargeSession::begun(1'750'000'000, 98);
  session.lastTime = 1'750'003'600.5;
  session.totalWattHours = 12.25;
  session.groupWattHours[SharedText("com.example.browser")] = 5.5;
  session.groupWattHours[SharedText("named:Vite")] = 1.25;
  session.groupNames[SharedText("com.example.browser")] = SharedText("Browser");
  session.groupNames[SharedText("named:Vite")] = SharedText("Vite");
  session.asleepSeconds = 28'800;
  session.asleepPercent = 4;
  session.asleepWattHours = 2.5;
  session.sleepStart = {.time = 1'750'003'600.5, .percent = 71, .remainingWh = 48.125};
  return session;
}

inline DischargeSession bareSession() {
  return DischargeSession::begun(1'750'000'000, {});
}

inline PowerBaseline smallBaseline() {
  return {{9.4F, 0.1F, 12.0F, 3.4028235e38F, 1e-45F}, 1'750'000'000.75};
}

}  // namespace embrix
