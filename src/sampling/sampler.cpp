#include "sampling/sampler.h"

#include <algorithm>
#include <numeric>

#include "running/sleep_blockers.h"
#include "sampling/simulator_devices.h"
#include "sampling/user_process_scan.h"

namespace embrix {

namespace {

constexpr double kSmoothingSeconds = 6;
constexpr double kForgottenScanSeconds = 30;
constexpr double kBlockerScanSeconds = 10;

// The counters can name more cores than the chip has: keeps the first so many of each kind.
void trimCores(std::vector<PowerBreakdown::Core>& cores, int performance, int efficiency) {
  std::vector<PowerBreakdown::Core> kept;
  for (const bool isPerformance : {true, false}) {
    int left = isPerformance ? performance : efficiency;
    for (const PowerBreakdown::Core& core : cores) {
      if (core.isPerformance == isPerformance && left-- > 0) kept.push_back(core);
    }
  }
  cores = std::move(kept);
}

}  // namespace

Sampler::Sampler(Host& host, SamplerOptions options)
    : host_(host),
      options_(options),
      machine_(MacInfo::from(host.machine)),
      systemFolders_(SystemFolders::forHost(host.name)),
      processes_(*host.processes),
      battery_(*host.battery),
      thermal_(*host.temperatures),
      apps_(*host.applications),
      energy_(*host.energy, *host.clock),
      stats_(*host.gpu, *host.memory),
      fans_(*host.smc),
      details_(*host.processDetails),
      gpu_(*host.gpu),
      assertions_(*host.assertions),
      responsibility_(*host.responsibility),
      grouper_([this](const ProcessSample& sample) { return appOf(sample); },
               [this](std::int32_t pid) { return responsibility_.lookup(pid); }),
      smoothed_(kSmoothingSeconds) {}

std::optional<Frame> Sampler::next() {
  host_.clock->beginTick();
  const double uptime = host_.clock->uptime();
  const Samples& samples = processes_.read();
  const std::optional<PowerBreakdown> breakdown = readBreakdown();
  const HashMap<std::int32_t, std::uint64_t>& gpuDeltas = gpu_.read();

  std::optional<Frame> frame;
  if (previousUptime_) {
    const double interval = uptime - *previousUptime_;
    RateCalculator::rates(previous_, samples, interval, rates_);
    groups_ = &grouper_.groups(samples);
    GPUAttribution::split(breakdown ? breakdown->gpu : 0, gpuDeltas, gpuShares_);
    takeRates(samples, interval);

    frame = std::move(spare_);
    fillGroups(samples, frame->groups);
    scanIfDue(samples, uptime);
    readWholeMachine(*frame);
    frame->breakdown = breakdown;
    frame->forgotten = forgotten_;
    frame->servers = servers_;
    frame->sleepBlockers = blockers_;
  }
  previous_.keep(samples);
  previousUptime_ = uptime;
  return frame;
}

std::optional<AppInfo> Sampler::appOf(const ProcessSample& sample) {
  return sample.path ? apps_.byExecutable(*sample.path) : std::nullopt;
}

std::optional<PowerBreakdown> Sampler::readBreakdown() {
  std::optional<PowerBreakdown> breakdown = energy_.read();
  if (breakdown) {
    trimCores(breakdown->cores, machine_.performanceCores, machine_.efficiencyCores);
  }
  return breakdown;
}

// Smooths every process that has a rate. One that is new in this tick, or whose counters ran
// backwards, has none and is left out; one that is left out loses what was smoothed for it.
void Sampler::takeRates(const Samples& samples, double interval) {
  rows_.clear();
  keep_.clear();
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (!rates_[i]) continue;
    const ProcessSample& sample = samples[i];
    const ProcessRate& rate = *rates_[i];
    const auto share = gpuShares_.find(sample.pid);
    const double gpuWatts = share == gpuShares_.end() ? 0 : share->second;
    keep_.insert(sample.id);
    const auto& smooth = smoothed_.update(
        sample.id, {gpuWatts, rate.watts, rate.cpuPercent, rate.wakeupsPerSecond}, interval);
    rows_.push_back({.group = groups_->keyNumber(i),
                     .sample = i,
                     .watts = smooth[kGPUWatts] + smooth[kWatts],
                     .cpuPercent = smooth[kCPU],
                     .wakeupsPerSecond = smooth[kWakeups],
                     .gpuWatts = smooth[kGPUWatts]});
  }
  smoothed_.prune(keep_);
}

void Sampler::fillGroups(const Samples& samples, std::vector<AppGroup>& groups) {
  placed_.assign(groups_->keyCount(), PlacedGroup());
  for (const PlacedRow& row : rows_) {
    PlacedGroup& group = placed_[row.group];
    if (group.rowCount++ == 0) group.firstSample = row.sample;
    group.watts += row.watts;
    group.cpuPercent += row.cpuPercent;
    group.wakeupsPerSecond += row.wakeupsPerSecond;
  }

  // By group; within one the hungriest first, and equals in the order of the process table.
  std::sort(rows_.begin(), rows_.end(), [](const PlacedRow& a, const PlacedRow& b) {
    if (a.group != b.group) return a.group < b.group;
    if (a.watts != b.watts) return a.watts > b.watts;
    return a.sample < b.sample;
  });
  groupOrder_.clear();
  std::size_t row = 0;
  for (std::size_t key = 0; key < placed_.size(); ++key) {
    placed_[key].firstRow = row;
    row += placed_[key].rowCount;
    if (placed_[key].rowCount > 0) groupOrder_.push_back(key);
  }
  std::sort(groupOrder_.begin(), groupOrder_.end(), [this](std::size_t a, std::size_t b) {
    if (placed_[a].watts != placed_[b].watts) return placed_[a].watts > placed_[b].watts;
    return a < b;
  });

  groups.resize(groupOrder_.size());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const PlacedGroup& placed = placed_[groupOrder_[i]];
    AppGroup& group = groups[i];
    group.identity = groups_->identity(placed.firstSample);
    group.watts = placed.watts;
    group.cpuPercent = placed.cpuPercent;
    group.wakeupsPerSecond = placed.wakeupsPerSecond;
    group.processes.resize(placed.rowCount);
    for (std::size_t j = 0; j < placed.rowCount; ++j) {
      const PlacedRow& from = rows_[placed.firstRow + j];
      const ProcessSample& sample = samples[from.sample];
      ProcessRow& to = group.processes[j];
      to.id = sample.id;
      to.pid = sample.pid;
      to.uid = sample.uid;
      to.name = sample.name;
      to.path = sample.path;
      to.watts = from.watts;
      to.cpuPercent = from.cpuPercent;
      to.wakeupsPerSecond = from.wakeupsPerSecond;
      to.memoryBytes = sample.footprint;
      to.gpuWatts = from.gpuWatts;
    }
  }
}

void Sampler::scanIfDue(const Samples& samples, double uptime) {
  if (uptime - lastForgottenScan_ >= kForgottenScanSeconds) {
    lastForgottenScan_ = uptime;
    const auto device = [this](const std::string& udid) {
      return SimulatorDevices::device(
          udid, host_.user.homeDirectory,
          [this](const std::string& path) { return host_.files->read(path); });
    };
    auto result = UserProcessScan::run(samples, host_.user, systemFolders_, details_, device,
                                       host_.clock->wallTime());
    forgotten_ = std::move(result.forgotten);
    servers_ = std::move(result.servers);
  }
  if (uptime - lastBlockerScan_ >= kBlockerScanSeconds) {
    lastBlockerScan_ = uptime;
    blockers_ = SleepBlockers::blockers(assertions_.read());
  }
}

void Sampler::readWholeMachine(Frame& frame) {
  frame.date = host_.clock->wallTime();
  frame.battery = battery_.read();
  frame.temperature = thermal_.cpuTemperature();
  frame.thermalState = options_.throttle ? ThermalState::serious : host_.thermalState->read();
  frame.gpuUtilization = stats_.gpuUtilization();
  frame.memory = stats_.memory();
  frame.fans = fans_.read();
}

}  // namespace embrix
