#include "sampling/pid_index.h"

#include <algorithm>

namespace embrix {

void PIDIndex::rebuild(const std::vector<ProcessSample>& samples) {
  const bool isSame =
      std::equal(samples.begin(), samples.end(), pids_.begin(), pids_.end(),
                 [](const ProcessSample& sample, std::int32_t pid) { return sample.pid == pid; });
  if (isSame) return;
  pids_.resize(samples.size());
  places_.clear();
  places_.reserve(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) {
    pids_[i] = samples[i].pid;
    places_.try_emplace(samples[i].pid, static_cast<std::uint32_t>(i));
  }
}

}  // namespace embrix
