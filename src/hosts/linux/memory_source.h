// Physical memory by /proc/meminfo and the kernel's pressure figure.
//
// Used memory is MemTotal − MemAvailable: what could not be had without swapping. Of it, as far as
// the kernel tells them apart:
//
//   wired       kernel memory that cannot be given back (SUnreclaim, KernelStack, PageTables)
//   compressor  compressed swap held in memory (Zswap)
//   internal    the rest, so that the parts are the whole again
//   purgeable   0: caches are not in the whole to begin with
//
// The free level is MemAvailable in percent of MemTotal, less when tasks stall for memory: it is at
// most 100 minus the percentage of the last 10 seconds in which some task did. Sampling thread
// only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/memory_source.h"
#include "hosts/linux/system_file.h"

namespace embrix {

// Of /proc/meminfo, in bytes. Absent when MemTotal or MemAvailable is missing or nonsense; the
// others count as 0 when missing.
struct MeminfoRecord {
  std::uint64_t total = 0;
  std::uint64_t available = 0;  // at most total
  std::uint64_t kernel = 0;
  std::uint64_t compressed = 0;

  bool operator==(const MeminfoRecord&) const = default;
};
std::optional<MeminfoRecord> parseMeminfo(std::string_view text);

// The "some avg10" of a /proc/pressure file: percent of the last 10 seconds, 0 to 100.
std::optional<double> parsePressure(std::string_view text);

class LinuxMemorySource final : public MemorySource {
 public:
  explicit LinuxMemorySource(const std::string& root = "/");

  std::uint64_t pageSize() override { return pageSize_; }
  std::uint64_t physicalBytes() override { return physicalBytes_; }  // MemTotal; 0 if unreadable
  std::optional<MemoryCounters> counters() override;

  // When called right behind counters(), it tells of that same reading.
  std::optional<std::int32_t> freeLevel() override;

 private:
  std::optional<MeminfoRecord> read();

  HeldFile meminfo_;
  HeldFile pressure_;
  std::uint64_t pageSize_ = 0;
  std::uint64_t physicalBytes_ = 0;
  std::optional<MeminfoRecord> fresh_;
};

}  // namespace embrix
