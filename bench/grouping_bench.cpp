// What the rules between the process table and the rows of a frame cost: grouping, rates and
// smoothing over a made-up machine whose processes stay the same from tick to tick, and over one
// where some come and go.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/hash_map.h"
#include "frame/process_sample.h"
#include "sampling/pid_index.h"
#include "sampling/previous_samples.h"
#include "sampling/process_grouper.h"
#include "sampling/rate_calculator.h"
#include "sampling/smoother.h"

namespace embrix {
namespace {

using Samples = std::vector<ProcessSample>;
constexpr double kTick = 2;  // seconds

ProcessSample process(std::int32_t pid, std::int32_t ppid, const std::string& path) {
  ProcessSample made;
  made.pid = pid;
  made.ppid = ppid;
  made.uid = pid % 3 == 0 ? 0 : 501;
  made.path = SharedText(path);
  made.name = SharedText(path.substr(path.rfind('/') + 1));
  made.startTime = 1'750'000'000;
  made.energyNJ = 1'000'000;
  made.id = processID(pid, made.startTime);
  return made;
}

// A third are daemons of the first process, a third helpers of applications, and a third stand
// deep below shells.
Samples machine(std::int64_t size) {
  Samples samples;
  samples.push_back(process(1, 0, "/sbin/launchd"));
  for (std::int32_t pid = 2; static_cast<std::int64_t>(samples.size()) < size; ++pid) {
    const std::string number = std::to_string(pid);
    switch (pid % 3) {
      case 0:
        samples.push_back(process(pid, 1, "/usr/libexec/com.example.daemon" + number));
        break;
      case 1:
        samples.push_back(
            process(pid, pid % 30 == 1 ? 1 : pid - pid % 30 + 1,
                    "/Applications/A" + std::to_string(pid / 30) + ".app/Contents/MacOS/A"));
        break;
      default:
        samples.push_back(process(pid, pid % 24 == 2 ? 1 : pid - 3, "/usr/local/bin/tool"));
    }
  }
  return samples;
}

ProcessGrouper makeGrouper(HashMap<SharedText, std::optional<AppInfo>>& apps) {
  return ProcessGrouper(
      [&apps](const ProcessSample& sample) {
        auto known = apps.find(*sample.path);
        if (known == apps.end()) {
          std::optional<AppInfo> app;
          if (sample.path->view().starts_with("/Applications")) {
            app = AppInfo{.name = sample.name, .bundleID = sample.path, .bundlePath = sample.path};
          }
          known = apps.try_emplace(*sample.path, app).first;
        }
        return known->second;
      },
      [](std::int32_t) { return std::optional<std::int32_t>(); });
}

void perProcess(benchmark::State& state) {
  state.counters["per_process"] = benchmark::Counter(
      static_cast<double>(state.range(0)),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void groupUnchanged(benchmark::State& state) {
  const Samples samples = machine(state.range(0));
  HashMap<SharedText, std::optional<AppInfo>> apps;
  ProcessGrouper grouper = makeGrouper(apps);
  for (auto _ : state) benchmark::DoNotOptimize(grouper.groups(samples).keyCount());
  perProcess(state);
}
BENCHMARK(groupUnchanged)->Arg(300)->Arg(1000)->Arg(3000);

void groupWithComingsAndGoings(benchmark::State& state) {
  const Samples even = machine(state.range(0));
  Samples odd = even;
  odd.erase(odd.begin() + static_cast<std::ptrdiff_t>(odd.size() / 2));
  HashMap<SharedText, std::optional<AppInfo>> apps;
  ProcessGrouper grouper = makeGrouper(apps);
  bool isOdd = false;
  for (auto _ : state) {
    benchmark::DoNotOptimize(grouper.groups(isOdd ? odd : even).keyCount());
    isOdd = !isOdd;
  }
  perProcess(state);
}
BENCHMARK(groupWithComingsAndGoings)->Arg(300)->Arg(1000)->Arg(3000);

void ratesOfATick(benchmark::State& state) {
  const Samples samples = machine(state.range(0));
  PreviousSamples previous;
  std::vector<std::optional<ProcessRate>> rates;
  for (auto _ : state) {
    RateCalculator::rates(previous, samples, kTick, rates);
    previous.keep(samples);
    benchmark::DoNotOptimize(rates.data());
  }
  perProcess(state);
}
BENCHMARK(ratesOfATick)->Arg(300)->Arg(1000)->Arg(3000);

void smoothingOfATick(benchmark::State& state) {
  const Samples samples = machine(state.range(0));
  LaneSmoother<4> smoother(6);
  HashSet<SharedText> keep;
  double watts = 0;
  for (auto _ : state) {
    keep.clear();
    watts += 0.001;
    for (const ProcessSample& sample : samples) {
      keep.insert(sample.id);
      benchmark::DoNotOptimize(smoother.update(sample.id, {watts, 1, 2, 3}, kTick));
    }
    smoother.prune(keep);
  }
  perProcess(state);
}
BENCHMARK(smoothingOfATick)->Arg(300)->Arg(1000)->Arg(3000);

}  // namespace
}  // namespace embrix
