// Takes one tick of the machine: reads every source in a fixed order, turns counters into smoothed
// rates, and hands back one Frame.
//
// Owns all readers and all that must survive between ticks. Used from one thread at a time.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "base/hash_map.h"
#include "frame/frame.h"
#include "frame/process_sample.h"
#include "host/host.h"
#include "running/system_folders.h"
#include "sampling/app_resolver.h"
#include "sampling/assertion_reader.h"
#include "sampling/battery_reader.h"
#include "sampling/energy_reader.h"
#include "sampling/fan_reader.h"
#include "sampling/gpu_attribution.h"
#include "sampling/gpu_usage_reader.h"
#include "sampling/mac_info.h"
#include "sampling/previous_samples.h"
#include "sampling/process_details_reader.h"
#include "sampling/process_grouper.h"
#include "sampling/process_reader.h"
#include "sampling/rate_calculator.h"
#include "sampling/responsibility.h"
#include "sampling/smoother.h"
#include "sampling/system_stats_reader.h"
#include "sampling/thermal_reader.h"

namespace embrix {

struct SamplerOptions {
  bool throttle = false;  // every frame says that the machine holds itself back
};

class Sampler {
 public:
  // Every reader is built at once. The host must outlive the sampler.
  explicit Sampler(Host& host, SamplerOptions options = {});

  // One tick. Absent at the first call, which only takes a baseline; a frame at every later one. No
  // source can make a tick fail: what it cannot read is missing from the frame.
  std::optional<Frame> next();

  // Takes back a frame that nobody needs any more, so that its storage serves the next one. A tick
  // that is handed the frame before last allocates nothing for processes that did not change.
  void recycle(Frame&& frame) { spare_ = std::move(frame); }

 private:
  using Samples = std::vector<ProcessSample>;

  std::optional<AppInfo> appOf(const ProcessSample& sample);
  std::optional<PowerBreakdown> readBreakdown();
  void takeRates(const Samples& samples, double interval);
  void fillGroups(const Samples& samples, std::vector<AppGroup>& groups);
  void scanIfDue(const Samples& samples, double uptime);
  void readWholeMachine(Frame& frame);

  // A process with its smoothed rates, before it is sorted into its group.
  struct PlacedRow {
    std::size_t group = 0;   // number of the group's key
    std::size_t sample = 0;  // place in the process table
    double watts = 0;
    double cpuPercent = 0;
    double wakeupsPerSecond = 0;
    double gpuWatts = 0;
  };
  struct PlacedGroup {
    std::size_t firstRow = 0;  // of the sorted rows
    std::size_t rowCount = 0;
    std::size_t firstSample = 0;  // the first process of the table that has the key
    double watts = 0;
    double cpuPercent = 0;
    double wakeupsPerSecond = 0;
  };

  Host& host_;
  SamplerOptions options_;
  MacInfo machine_;
  SystemFolders systemFolders_;

  ProcessReader processes_;
  BatteryReader battery_;
  ThermalReader thermal_;
  AppResolver apps_;
  EnergyReader energy_;
  SystemStatsReader stats_;
  FanReader fans_;
  ProcessDetailsReader details_;
  GPUUsageReader gpu_;
  AssertionReader assertions_;
  Responsibility responsibility_;
  ProcessGrouper grouper_;

  // A row's smoothed figures, all under its id.
  enum Lane : std::size_t { kGPUWatts, kWatts, kCPU, kWakeups, kLanes };
  LaneSmoother<kLanes> smoothed_;

  std::vector<ForgottenItem> forgotten_;
  std::vector<LocalServer> servers_;
  std::vector<SleepBlocker> blockers_;
  double lastForgottenScan_ = -std::numeric_limits<double>::infinity();  // uptime
  double lastBlockerScan_ = -std::numeric_limits<double>::infinity();    // uptime

  PreviousSamples previous_;
  std::optional<double> previousUptime_;

  // Storage that outlives a tick only to be used again.
  std::vector<std::optional<ProcessRate>> rates_;
  HashMap<std::int32_t, double> gpuShares_;
  HashSet<SharedText> keep_;
  std::vector<PlacedRow> rows_;
  std::vector<PlacedGroup> placed_;
  std::vector<std::size_t> groupOrder_;
  const ProcessGroups* groups_ = nullptr;
  Frame spare_;
};

}  // namespace embrix
