#include "hosts/linux/memory_source.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "base/number_text.h"

namespace embrix {

namespace {

// The bytes of a line such as "MemTotal:       16082512 kB".
std::optional<std::uint64_t> bytesOf(std::string_view value) {
  constexpr std::string_view kUnit = "kB";
  if (!value.ends_with(kUnit)) return std::nullopt;
  value.remove_suffix(kUnit.size());
  const auto kilobytes = wholeInteger(value);
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / 1024 / 8;
  if (!kilobytes || *kilobytes < 0 || *kilobytes > kMost) return std::nullopt;
  return static_cast<std::uint64_t>(*kilobytes) * 1024;
}

}  // namespace

std::optional<MeminfoRecord> parseMeminfo(std::string_view text) {
  std::optional<std::uint64_t> total;
  std::optional<std::uint64_t> available;
  MeminfoRecord record;
  forEachPiece(text, '\n', [&](std::string_view line) {
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view key = line.substr(0, colon);
    const std::string_view value = line.substr(colon + 1);
    if (key == "MemTotal") {
      total = bytesOf(value);
    } else if (key == "MemAvailable") {
      available = bytesOf(value);
    } else if (key == "SUnreclaim" || key == "KernelStack" || key == "PageTables") {
      record.kernel += bytesOf(value).value_or(0);
    } else if (key == "Zswap") {
      record.compressed = bytesOf(value).value_or(0);
    }
  });
  if (!total || *total == 0 || !available) return std::nullopt;
  record.total = *total;
  record.available = std::min(*available, *total);
  return record;
}

std::optional<double> parsePressure(std::string_view text) {
  constexpr std::string_view kStart = "some avg10=";
  if (!text.starts_with(kStart)) return std::nullopt;
  text.remove_prefix(kStart.size());
  const auto percent = wholeDouble(text.substr(0, text.find(' ')));
  return percent && *percent >= 0 && *percent <= 100 ? percent : std::nullopt;
}

LinuxMemorySource::LinuxMemorySource(const std::string& root)
    : meminfo_(belowRoot(root, "/proc/meminfo")),
      pressure_(belowRoot(root, "/proc/pressure/memory")) {
  const long size = ::sysconf(_SC_PAGESIZE);
  pageSize_ = size > 0 ? static_cast<std::uint64_t>(size) : 4096;
  if (const auto record = read()) physicalBytes_ = record->total;
}

std::optional<MeminfoRecord> LinuxMemorySource::read() {
  std::array<char, 8192> buffer;
  const auto text = meminfo_.read(buffer);
  return text ? parseMeminfo(*text) : std::nullopt;
}

std::optional<MemoryCounters> LinuxMemorySource::counters() {
  fresh_ = read();
  if (!fresh_) return std::nullopt;
  const std::uint64_t used = (fresh_->total - fresh_->available) / pageSize_;
  MemoryCounters counters;
  counters.wiredPages = std::min(fresh_->kernel / pageSize_, used);
  counters.compressorPages = std::min(fresh_->compressed / pageSize_, used - counters.wiredPages);
  counters.internalPages = used - counters.wiredPages - counters.compressorPages;
  return counters;
}

std::optional<std::int32_t> LinuxMemorySource::freeLevel() {
  const auto record = fresh_ ? std::exchange(fresh_, std::nullopt) : read();
  if (!record) return std::nullopt;
  double level =
      std::floor(static_cast<double>(record->available) / static_cast<double>(record->total) * 100);
  std::array<char, 256> buffer;
  const auto text = pressure_.read(buffer);
  const auto stalled = text ? parsePressure(*text) : std::nullopt;
  if (stalled) level = std::min(level, 100 - std::ceil(*stalled));
  return static_cast<std::int32_t>(level);
}

}  // namespace embrix
