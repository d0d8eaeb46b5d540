// What the records cost at their largest. BM_FrameIntoHistory is what one frame costs the history,
// the averages and the count for runaways. BM_SaveAll is the background's share of a save, with a
// week and with all days in the archive; BM_SnapshotAll is the main thread's.
//
// The peers of BM_SaveAll/days:7 are BM_WriteAlone, the same bytes written and flushed by the
// plainest program; and RapidJSON and nlohmann/json, which make the text of the history anew each
// time. Those of BM_LoadHistory read what they have written. No peer makes records of what it
// reads.

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <nlohmann/json.hpp>

#include "base/whole_file.h"
#include "full_records.h"
#include "records/record_encoding.h"
#include "records/window_counts.h"
#include "records/window_sums.h"

namespace embrix {
namespace {

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

// One call of write and one of fsync, over the file that is there.
void writeAlone(const std::string& path, std::string_view bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (::write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
  ::fsync(file);
  ::close(file);
}

void BM_WriteAlone(benchmark::State& state) {
  Records records(7);
  records.save();
  std::string bytes;
  for (const auto& file : std::filesystem::directory_iterator(records.store.directory)) {
    bytes += readWholeFile(file.path(), file.file_size()).value();
  }
  for (auto _ : state) writeAlone(records.store.directory + "/alone", bytes);
  state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_WriteAlone)->Unit(benchmark::kMillisecond);

void BM_HistoryByRapidJson(benchmark::State& state) {
  Records records(7);
  for (auto _ : state) {
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer> writer(text);
    writer.StartArray();
    for (const HistoryPoint& point : records.history.points()) {
      writer.StartObject();
      writer.Key("time");
      writer.Double(point.time);
      writer.Key("systemWatts");
      writer.Double(point.systemWatts.value());
      writer.Key("groupWatts");
      writer.StartObject();
      for (const auto& [key, watts] : point.groupWatts) {
        writer.Key(key.view().data(), static_cast<rapidjson::SizeType>(key.view().size()));
        writer.Double(watts);
      }
      writer.EndObject();
      writer.Key("temperature");
      writer.Double(point.temperature.value());
      writer.Key("cpuPercent");
      writer.Double(point.cpuPercent);
      writer.Key("label");
      writer.String(point.label->string().c_str());
      writer.EndObject();
    }
    writer.EndArray();
    writeAlone(records.store.directory + "/alone", {text.GetString(), text.GetSize()});
  }
}
BENCHMARK(BM_HistoryByRapidJson)->Unit(benchmark::kMillisecond);

void BM_HistoryByNlohmannJson(benchmark::State& state) {
  Records records(7);
  for (auto _ : state) {
    nlohmann::json points = nlohmann::json::array();
    for (const HistoryPoint& point : records.history.points()) {
      nlohmann::json groups = nlohmann::json::object();
      for (const auto& [key, watts] : point.groupWatts) groups[key.string()] = watts;
      points.push_back({{"time", point.time},
                        {"systemWatts", point.systemWatts.value()},
                        {"groupWatts", std::move(groups)},
                        {"temperature", point.temperature.value()},
                        {"cpuPercent", point.cpuPercent},
                        {"label", point.label->string()}});
    }
    writeAlone(records.store.directory + "/alone", points.dump());
  }
}
BENCHMARK(BM_HistoryByNlohmannJson)->Unit(benchmark::kMillisecond);

// What a save does apart from the files: the text of everything.
void BM_TextOfAll(benchmark::State& state) {
  Records records;
  records.save();
  for (auto _ : state) {
    state.PauseTiming();
    records.goOn();
    const HistorySnapshot snapshot = records.history.snapshot();
    state.ResumeTiming();
    benchmark::DoNotOptimize(snapshot.text().pieces.size());
    benchmark::DoNotOptimize(jsonOf(records.ledger));
    benchmark::DoNotOptimize(records.archive.text());
    benchmark::DoNotOptimize(jsonOf(records.session));
    benchmark::DoNotOptimize(jsonOf(records.baseline));
  }
}
BENCHMARK(BM_TextOfAll)->Unit(benchmark::kMicrosecond);

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

struct Loaded {
  History history{kCapacity};
  DayLedger ledger;
  Archive archive;
  std::optional<DischargeSession> session;
  PowerBaseline baseline;
};

// A run that starts takes the last 1,800 seconds: half of the points at the usual interval, all of
// them at the shortest.
void BM_LoadAll(benchmark::State& state) {
  Records records(static_cast<int>(state.range(0)));
  records.save();
  const double newerThan =
      records.history.points().back().time - static_cast<double>(state.range(1));
  std::optional<Loaded> loaded;
  for (auto _ : state) {
    loaded.emplace();
    for (HistoryPoint& point : records.store.load(newerThan)) {
      loaded->history.append(std::move(point));
    }
    loaded->ledger = records.store.loadLedger().value();
    loaded->archive = records.store.loadArchive().value();
    loaded->session = records.store.loadDischarge().value();
    loaded->baseline = records.store.loadBaseline().value();
    state.PauseTiming();  // nothing of it is destroyed at a start
    loaded.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_LoadAll)
    ->ArgNames({"days", "seconds"})
    ->ArgsProduct({{7, kMostDays}, {1800, 4000}})
    ->Unit(benchmark::kMillisecond);

void BM_LoadHistory(benchmark::State& state) {
  Records records;
  records.save();
  for (auto _ : state) benchmark::DoNotOptimize(records.store.load(0));
}
BENCHMARK(BM_LoadHistory)->Unit(benchmark::kMillisecond);

void BM_LoadHistoryByRapidJson(benchmark::State& state) {
  Records records(7);
  records.save();
  const std::string path = records.store.directory + "/history.json";
  for (auto _ : state) {
    const std::string text = readWholeFile(path, std::size_t{1} << 30).value();
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag>(text.data(), text.size());
    benchmark::DoNotOptimize(document.Size());
  }
}
BENCHMARK(BM_LoadHistoryByRapidJson)->Unit(benchmark::kMillisecond);

void BM_LoadHistoryByNlohmannJson(benchmark::State& state) {
  Records records(7);
  records.save();
  const std::string path = records.store.directory + "/history.json";
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        nlohmann::json::parse(readWholeFile(path, std::size_t{1} << 30).value()));
  }
}
BENCHMARK(BM_LoadHistoryByNlohmannJson)->Unit(benchmark::kMillisecond);

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
