// Physical cores by kind.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct CoreCounts {
  int performance = 0;
  int efficiency = 0;

  bool operator==(const CoreCounts&) const = default;
};

// Cores that are online; the threads of one core are one. Efficiency cores are those of Intel's
// "cpu_atom" kind, else those of the least capacity where some core has well more (a third); all
// are performance cores on other machines. Absent when no core's topology can be read.
std::optional<CoreCounts> countCores(const std::string& root);

// Logical CPUs by number, ascending.
struct CpuCores {
  std::vector<int> online;
  // Where a process goes that is to run slower and cooler: the efficiency cores, or, where all
  // cores are alike, the last quarter of them, at least one.
  std::vector<int> calm;
};

// Both are empty when no core's topology can be read.
CpuCores coresOf(const std::string& root);

// The numbers of a list such as "0-3,8,10-11", ascending as they stand. A list that is no such, or
// that names a number above 8191, is empty.
std::vector<int> parseCpuList(std::string_view text);

}  // namespace embrix
