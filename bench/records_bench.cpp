// The records at their largest: a history of 1,800 points with 40 groups each, an archive of 400
// days with 40 apps each, a ledger and a session of 300 groups, a day of baseline.
//
// BM_FrameIntoHistory is what one frame costs the history, the averages and the count for runaways.
// BM_SaveAll is the background's share of a save, with a week and with all days in the archive;
// BM_SnapshotAll is the main thread's.

#include <benchmark/benchmark.h>

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history.h"
#include "records/history_store.h"
#include "records/power_baseline.h"
#include "records/window_counts.h"
#include "records/window_sums.h"

namespace embrix {
namespace {

constexpr std::size_t kCapacity = 1800;
constexpr int kGroups = 40;
constexpr double kStart = 1'750'000'000;
constexpr double kInterval = 2.0625;

// The groups of a machine: more than a point has, and some come and go.
const std::vector<SharedText>& keys() {
  static const std::vector<SharedText> all = [] {
    std::vector<SharedText> made;
    for (int i = 0; i < 300; ++i) {
      made.emplace_back(fmt::format("com.example.developer.app{:03}", i));
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

History fullHistory(Days& days, std::size_t points = kCapacity) {
  History history(kCapacity);
  for (std::size_t i = 0; i < points; ++i) history.append(days.point());
  return history;
}

DayLedger fullLedger(Days& days, std::string day) {
  DayLedger ledger = DayLedger::fresh(day);
  for (const SharedText& key : keys()) {
    ledger.groupWattHours[key] = days.watts();
    ledger.groupNames[key] = SharedText(fmt::format("App {}", key.size()));
  }
  ledger.totalWattHours = days.watts();
  return ledger;
}

constexpr int kMostDays = static_cast<int>(Archive::kMostDays);

Archive archiveOf(Days& days, int count) {
  Archive archive;
  for (int i = 0; i < count; ++i) {
    archive.record(fullLedger(days, fmt::format("20{:02}-{:02}-{:02}", 20 + i / 336,
                                                i / 28 % 12 + 1, i % 28 + 1)),
                   BatteryReading{.healthPercent = 91, .cycleCount = i, .fullWh = 68.5});
  }
  return archive;
}

DischargeSession fullSession(Days& days) {
  DischargeSession session = DischargeSession::begun(kStart, 100);
  for (const SharedText& key : keys()) {
    session.groupWattHours[key] = days.watts();
    session.groupNames[key] = key;
  }
  return session;
}

PowerBaseline fullBaseline(Days& days) {
  PowerBaseline baseline;
  for (std::size_t i = 0; i < PowerBaseline::kMostSamples; ++i) {
    baseline.add(days.watts(), kStart + 30 * static_cast<double>(i));
  }
  return baseline;
}

// Everything that a save takes, and a folder in memory for it where there is one.
struct Records {
  explicit Records(int archivedDays = kMostDays) : archive(archiveOf(days, archivedDays)) {
    std::string pattern = std::filesystem::exists("/dev/shm") ? "/dev/shm/embrix-bench.XXXXXX"
                                                              : "/tmp/embrix-bench.XXXXXX";
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

  void save() const {
    store.save(history.snapshot());
    store.saveLedger(ledger);
    store.saveArchive(archive);
    store.saveDischarge(session);
    store.saveBaseline(baseline);
  }

  // What happens between two saves at the usual interval.
  void goOn() {
    for (int i = 0; i < 15; ++i) history.append(days.point());
    ledger.totalWattHours += 0.1;
    archive.record(ledger, std::nullopt);
  }
};

void BM_FrameIntoHistory(benchmark::State& state) {
  Days days;
  History history = fullHistory(days, static_cast<std::size_t>(state.range(0)));
  std::vector<HistoryPoint> points;
  for (int i = 0; i < 4096; ++i) points.push_back(days.point());
  WindowSums sums(600);
  WindowCounts counts;
  std::size_t next = 0;
  double time = history.points().back().time;
  for (auto _ : state) {
    HistoryPoint point = points[next++ % points.size()];
    point.time = time += kInterval;
    history.append(std::move(point));
    sums.advance(history, time);
    for (std::size_t i = 0; i < 50; ++i) benchmark::DoNotOptimize(sums.average(keys()[i]));
    counts.advance(history, time, 300, 3);
    benchmark::DoNotOptimize(counts.keysWithShare(0.8));
  }
}
BENCHMARK(BM_FrameIntoHistory)->Arg(300)->Arg(900)->Arg(1800);

void BM_FrameIntoLedger(benchmark::State& state) {
  Days days;
  DayLedger ledger = fullLedger(days, "2026-03-02");
  std::vector<DayLedger::Entry> entries;
  for (const SharedText& key : keys()) entries.push_back({key, SharedText("App"), days.watts()});
  DayLedger::Step step{.day = ledger.day,
                       .now = kStart,
                       .elapsed = kInterval,
                       .totalWatts = 20,
                       .warmWatts = 10,
                       .entries = entries,
                       .label = {}};
  for (auto _ : state) ledger.record(step);
}
BENCHMARK(BM_FrameIntoLedger);

void BM_SnapshotAll(benchmark::State& state) {
  Records records;
  for (auto _ : state) {
    benchmark::DoNotOptimize(records.history.snapshot());
    benchmark::DoNotOptimize(DayLedger(records.ledger));
    benchmark::DoNotOptimize(Archive(records.archive));
    benchmark::DoNotOptimize(DischargeSession(records.session));
    benchmark::DoNotOptimize(PowerBaseline(records.baseline));
  }
}
BENCHMARK(BM_SnapshotAll)->Unit(benchmark::kMicrosecond);

void BM_SaveAll(benchmark::State& state) {
  Records records(static_cast<int>(state.range(0)));
  records.save();
  for (auto _ : state) {
    state.PauseTiming();
    records.goOn();
    state.ResumeTiming();
    records.save();
  }
  std::uintmax_t bytes = 0;
  for (const auto& file : std::filesystem::directory_iterator(records.store.directory)) {
    bytes += file.file_size();
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_SaveAll)->ArgName("days")->Arg(7)->Arg(kMostDays)->Unit(benchmark::kMillisecond);

// The first save of a run formats everything.
void BM_SaveAllAnew(benchmark::State& state) {
  Records records;
  for (auto _ : state) {
    state.PauseTiming();
    Records fresh;
    state.ResumeTiming();
    fresh.save();
  }
}
BENCHMARK(BM_SaveAllAnew)->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_LoadAll(benchmark::State& state) {
  Records records(static_cast<int>(state.range(0)));
  records.save();
  for (auto _ : state) {
    History history(kCapacity);
    for (HistoryPoint& point : records.store.load(0)) history.append(std::move(point));
    benchmark::DoNotOptimize(history);
    benchmark::DoNotOptimize(records.store.loadLedger());
    benchmark::DoNotOptimize(records.store.loadArchive());
    benchmark::DoNotOptimize(records.store.loadDischarge());
    benchmark::DoNotOptimize(records.store.loadBaseline());
  }
}
BENCHMARK(BM_LoadAll)->ArgName("days")->Arg(7)->Arg(kMostDays)->Unit(benchmark::kMillisecond);

void BM_LoadHistory(benchmark::State& state) {
  Records records;
  records.save();
  for (auto _ : state) benchmark::DoNotOptimize(records.store.load(0));
}
BENCHMARK(BM_LoadHistory)->Unit(benchmark::kMillisecond);

void BM_Median(benchmark::State& state) {
  Days days;
  const PowerBaseline baseline = fullBaseline(days);
  for (auto _ : state) benchmark::DoNotOptimize(baseline.median());
}
BENCHMARK(BM_Median);

void BM_BaselineAdd(benchmark::State& state) {
  Days days;
  PowerBaseline baseline = fullBaseline(days);
  double time = baseline.lastAdded();
  for (auto _ : state) baseline.add(days.watts(), time += 30);
}
BENCHMARK(BM_BaselineAdd);

}  // namespace
}  // namespace embrix
