// The counters of the tick before, by pid: what a rate needs of a sample and no more, so that
// keeping a tick copies numbers and no texts. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "frame/process_sample.h"
#include "sampling/pid_index.h"

namespace embrix {

// As in ProcessSample.
struct ProcessCounters {
  std::uint64_t startTime = 0;
  std::optional<std::uint64_t> energyNJ;
  std::uint64_t cpuNS = 0;
  std::uint64_t wakeups = 0;
};

class PreviousSamples {
 public:
  PreviousSamples() = default;
  explicit PreviousSamples(const std::vector<ProcessSample>& samples) { keep(samples); }

  // Replaces what was kept.
  void keep(const std::vector<ProcessSample>& samples);

  // The counters of that pid, null when it was not there. Valid until the next keep().
  const ProcessCounters* find(std::int32_t pid) const {
    const std::optional<std::size_t> place = index_.find(pid);
    return place ? &counters_[*place] : nullptr;
  }

 private:
  PIDIndex index_;
  std::vector<ProcessCounters> counters_;
};

}  // namespace embrix
