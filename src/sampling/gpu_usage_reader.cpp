#include "sampling/gpu_usage_reader.h"

#include <charconv>
#include <limits>
#include <utility>

namespace embrix {

namespace {

// Stops at the largest number: a counter that wraps would look like one that went down.
void addTo(std::uint64_t& total, std::uint64_t amount) {
  const std::uint64_t room = std::numeric_limits<std::uint64_t>::max() - total;
  total += amount < room ? amount : room;
}

}  // namespace

const HashMap<std::int32_t, std::uint64_t>& GPUUsageReader::read() {
  collectTotals();
  deltas_.clear();
  for (const auto& [pid, total] : totals_) {
    const auto before = previous_.find(pid);
    if (before != previous_.end() && total > before->second) deltas_[pid] = total - before->second;
  }
  std::swap(previous_, totals_);
  return deltas_;
}

std::optional<std::int32_t> GPUUsageReader::pidOf(std::string_view creator) {
  constexpr std::string_view kPrefix = "pid ";
  if (!creator.starts_with(kPrefix)) return std::nullopt;
  creator.remove_prefix(kPrefix.size());
  // from_chars would take a minus, too.
  const std::string_view digits = creator.substr(0, creator.find_first_not_of("0123456789"));
  std::int32_t pid = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), pid);
  return result.ec == std::errc() ? std::optional(pid) : std::nullopt;
}

void GPUUsageReader::collectTotals() {
  totals_.clear();
  for (const GpuClient& client : source_.clients()) {
    const auto pid = client.creator ? pidOf(*client.creator) : std::nullopt;
    if (!pid || !client.accumulatedTimes) continue;
    // A client without a context yet still gives its process a base to measure from.
    std::uint64_t& total = totals_[*pid];
    for (const auto& time : *client.accumulatedTimes) addTo(total, time.value_or(0));
  }
}

}  // namespace embrix
