// The records at their largest: a history of 1,800 points with 40 groups each (2.7 MB), an archive
// of 400 days with 40 apps each, a ledger and a session of 300 groups, a day of baseline. They are
// kept in the folder for temporary files, which should lie on a disk: there a save flushes to it.
#pragma once

#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history.h"
#include "records/history_store.h"
#include "records/power_baseline.h"

namespace embrix {

inline constexpr std::size_t kCapacity = 1800;
inline constexpr int kGroups = 40;
inline constexpr double kStart = 1'750'000'000;
inline constexpr double kInterval = 2.0625;

// The groups of a machine: more than a point has, and some come and go.
inline const std::vector<SharedText>& keys() {
  static const std::vector<SharedText> all = [] {
    std::vector<SharedText> made;
    for (int i = 0; i < 300; ++i) {
      made.emplace_back(fmt::format("dev.tool.{:03}", i));
    }
    return made;
  }();
  return all;
}

class Days {
 public:
  HistoryPoint point() {
    std::vector<SharedMap<double>::Entry> groups;
    for (int i = 0; i < kGroups; ++i) {
      const std::size_t wanderer = keys().size() - 1 - made_ / 100 % 50;
      groups.push_back({i == 0 ? keys()[wanderer] : keys()[static_cast<std::size_t>(i)], watts()});
    }
    ++made_;
    return {.time = kStart + kInterval * static_cast<double>(made_),
            .systemWatts = watts(),
            .groupWatts = SharedMap<double>(std::move(groups)),
            .temperature = watts(),
            .cpuPercent = watts(),
            .label = SharedText("Xcode")};
  }

  double watts() { return spread_(random_); }

 private:
  std::mt19937_64 random_{7};
  std::uniform_real_distribution<double> spread_{0.05, 40};
  std::size_t made_ = 0;
};

inline History fullHistory(Days& days, std::size_t points = kCapacity) {
  History history(kCapacity);
  for (std::size_t i = 0; i < points; ++i) history.append(days.point());
  return history;
}

inline DayLedger fullLedger(Days& days, std::string day) {
  DayLedger ledger = DayLedger::fresh(day);
  for (const SharedText& key : keys()) {
    ledger.groupWattHours[key] = days.watts();
    ledger.groupNames[key] = SharedText(fmt::format("App {}", key.size()));
  }
  ledger.totalWattHours = days.watts();
  return ledger;
}

inline constexpr int kMostDays = static_cast<int>(Archive::kMostDays);

inline Archive archiveOf(Days& days, int count) {
  Archive archive;
  for (int i = 0; i < count; ++i) {
    archive.record(fullLedger(days, fmt::format("20{:02}-{:02}-{:02}", 20 + i / 336,
                                                i / 28 % 12 + 1, i % 28 + 1)),
                   BatteryReading{.healthPercent = 91, .cycleCount = i, .fullWh = 68.5});
  }
  return archive;
}

inline DischargeSession fullSession(Days& days) {
  DischargeSession session = DischargeSession::begun(kStart, 100);
  for (const SharedText& key : keys()) {
    session.groupWattHours[key] = days.watts();
    session.groupNames[key] = key;
  }
  return session;
}

inline PowerBaseline fullBaseline(Days& days) {
  PowerBaseline baseline;
  for (std::size_t i = 0; i < PowerBaseline::kMostSamples; ++i) {
    baseline.add(days.watts(), kStart + 30 * static_cast<double>(i));
  }
  return baseline;
}

// Everything that a save takes, and a folder for it.
struct Records {
  explicit Records(int archivedDays = kMostDays) : archive(archiveOf(days, archivedDays)) {
    std::string pattern = std::filesystem::temp_directory_path() / "embrix-bench.XXXXXX";
    store.directory = mkdtemp(pattern.data());
  }
  ~Records() { std::filesystem::remove_all(store.directory); }

  Days days;
  History history = fullHistory(days);
  DayLedger ledger = fullLedger(days, "2026-03-02");
  Archive archive;
  DischargeSession session = fullSession(days);
  PowerBaseline baseline = fullBaseline(days);
  HistoryStore store;

  void save() const { store.saveAll(history.snapshot(), ledger, archive, session, baseline); }

  // What happens between two saves at the usual interval.
  void goOn() {
    for (int i = 0; i < 15; ++i) history.append(days.point());
    ledger.totalWattHours += 0.1;
    archive.record(ledger, std::nullopt);
  }
};

}  // namespace embrix
