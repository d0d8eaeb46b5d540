#include "sampling/previous_samples.h"

namespace embrix {

void PreviousSamples::keep(const std::vector<ProcessSample>& samples) {
  index_.rebuild(samples);
  counters_.resize(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const ProcessSample& sample = samples[i];
    counters_[i] = {.startTime = sample.startTime,
                    .energyNJ = sample.energyNJ,
                    .cpuNS = sample.cpuNS,
                    .wakeups = sample.wakeups};
  }
}

}  // namespace embrix
