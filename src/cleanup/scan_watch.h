// How far a scan is, and whether anybody still wants it. Shared by the main thread and the threads
// of the scan.
#pragma once

#include <atomic>
#include <cstdint>

#include "host/folder_source.h"

namespace embrix {

struct ScanProgress {
  int spotsDone = 0;  // of kCatalogPlaces
  std::uint64_t files = 0;
  std::int64_t bytes = 0;

  bool operator==(const ScanProgress&) const = default;
};

class ScanWatch {
 public:
  void abandon() noexcept { measured_.abandon(); }
  bool abandoned() const noexcept { return measured_.abandoned(); }
  void spotDone() noexcept { spotsDone_.fetch_add(1, std::memory_order_relaxed); }
  MeasureWatch& measured() noexcept { return measured_; }

  ScanProgress progress() const noexcept {
    return {.spotsDone = spotsDone_.load(std::memory_order_relaxed),
            .files = measured_.files(),
            .bytes = measured_.bytes()};
  }

 private:
  MeasureWatch measured_;
  std::atomic<int> spotsDone_ = 0;
};

}  // namespace embrix
