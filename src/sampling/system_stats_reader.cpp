#include "sampling/system_stats_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <variant>

namespace embrix {

namespace {

// The sum or the product, absent when it passes 64 bits.
std::optional<std::uint64_t> sum(std::uint64_t a, std::uint64_t b) {
  return a > std::numeric_limits<std::uint64_t>::max() - b ? std::nullopt : std::optional(a + b);
}

std::optional<std::uint64_t> product(std::uint64_t a, std::uint64_t b) {
  if (b != 0 && a > std::numeric_limits<std::uint64_t>::max() / b) return std::nullopt;
  return a * b;
}

// App, wired and compressed memory. Cached files and free memory do not count.
std::optional<std::uint64_t> usedPages(const MemoryCounters& counters) {
  const std::uint64_t app =
      counters.internalPages - std::min(counters.purgeablePages, counters.internalPages);
  const auto resident = sum(app, counters.wiredPages);
  return resident ? sum(*resident, counters.compressorPages) : std::nullopt;
}

// A whole or a fractional number under the key, below zero and beyond 32 bits left out.
std::optional<double> numberAt(const PropertyMap& map, std::string_view key) {
  const Property* property = propertyAt(map, key);
  if (property == nullptr) return std::nullopt;
  double number = 0;
  if (const auto* whole = std::get_if<std::int64_t>(&property->value)) {
    number = static_cast<double>(*whole);
  } else if (const auto* fractional = std::get_if<double>(&property->value)) {
    number = *fractional;
  } else {
    return std::nullopt;
  }
  const bool isSane = number >= 0 && number <= std::numeric_limits<std::int32_t>::max();
  return isSane ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<double> SystemStatsReader::gpuUtilization() {
  const auto statistics = gpu_.performanceStatistics();
  if (!statistics) return std::nullopt;
  const auto percent = numberAt(*statistics, "Device Utilization %");
  return percent ? std::optional(*percent / 100) : std::nullopt;
}

std::optional<MemoryReading> SystemStatsReader::memory() {
  const auto counters = memory_.counters();
  if (!counters) return std::nullopt;
  const auto pages = usedPages(*counters);
  const auto usedBytes = pages ? product(*pages, memory_.pageSize()) : std::nullopt;
  const std::uint64_t totalBytes = memory_.physicalBytes();
  if (!usedBytes || totalBytes == 0) return std::nullopt;
  const auto freePercent = memory_.freeLevel();
  const double level = freePercent ? *freePercent / 100.0 : 1.0;
  return MemoryReading{.usedBytes = *usedBytes,
                       .totalBytes = totalBytes,
                       .pressure = std::clamp(1 - level, 0.0, 1.0)};
}

}  // namespace embrix
