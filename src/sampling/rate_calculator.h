// Turns two samples of a process's counters into rates. Pure.
#pragma once

#include <optional>
#include <vector>

#include "frame/process_rate.h"
#include "frame/process_sample.h"
#include "sampling/previous_samples.h"

namespace embrix {

struct RateCalculator {
  // The rates of all current processes: one place for each of `current`, absent for a process that
  // was not there before, that has the pid of another, or whose counters ran backwards. Where one
  // of its two samples has no energy the watts are 0 and the other rates stand. No rate is limited
  // from above. `interval` is in seconds; one that is not above 0, no number, or too extreme to
  // divide by gives no rates at all. Handing the same vector in at each tick lets its storage be
  // used again.
  static void rates(const PreviousSamples& previous, const std::vector<ProcessSample>& current,
                    double interval, std::vector<std::optional<ProcessRate>>& result);
};

}  // namespace embrix
