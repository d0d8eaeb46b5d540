// A set of logical CPUs, and where a thread may run (sched_setaffinity(2)).
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace embrix {

class CpuSet {
 public:
  CpuSet() = default;

  // Numbers from 0 to 8191, the kernel's own limit; others are left out.
  static CpuSet of(const std::vector<int>& numbers);

  // Every CPU that there could ever be, also one that is put in later.
  static CpuSet everywhere();

  // Where the thread may run now: `thread` is its id, 0 for the calling one. Absent when there is
  // no such thread.
  static std::optional<CpuSet> ofThread(std::int32_t thread);

  // Lets the thread run on these alone, less those that are closed to it for good. 0, or the errno:
  // EINVAL when nothing would be left.
  int applyTo(std::int32_t thread) const;

  bool empty() const { return words_.empty(); }
  std::vector<int> numbers() const;  // ascending
  bool isWithin(const CpuSet& other) const;
  CpuSet operator&(const CpuSet& other) const;
  bool operator==(const CpuSet&) const = default;

 private:
  void trim();

  std::vector<unsigned long> words_;  // lowest numbers first; the last one is never 0
};

}  // namespace embrix
