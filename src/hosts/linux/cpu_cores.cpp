#include "hosts/linux/cpu_cores.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>

#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

constexpr std::int64_t kHighestCpu = 8191;  // the kernel's own limit

struct Core {
  std::string threads;  // those of the core, as a list
  std::int64_t capacity = 0;
  bool isAtom = false;
};

std::vector<Core> physicalCores(const std::string& root) {
  const std::string directory = belowRoot(root, "/sys/devices/system/cpu");
  const auto atoms =
      parseCpuList(readSystemLine(belowRoot(root, "/sys/devices/cpu_atom/cpus")).value_or(""));
  std::vector<Core> cores;
  std::set<std::string> seen;
  for (const std::string& name : namesIn(directory)) {
    if (!name.starts_with("cpu")) continue;
    const auto number = wholeInteger(std::string_view(name).substr(3));
    if (!number || *number < 0) continue;
    const std::string cpu = directory + "/" + name;
    auto threads = readSystemLine(cpu + "/topology/core_cpus_list");
    if (!threads) threads = readSystemLine(cpu + "/topology/thread_siblings_list");  // before 5.3
    if (!threads || !seen.insert(*threads).second) continue;
    cores.push_back({*threads,
                     std::max<std::int64_t>(readInteger(cpu + "/cpu_capacity").value_or(0), 0),
                     std::find(atoms.begin(), atoms.end(), *number) != atoms.end()});
  }
  return cores;
}

// The capacity up to which a core counts as an efficiency core; below every capacity when the cores
// are of one kind. Favoured cores of one kind differ by a few percent, hence the room.
std::int64_t efficiencyCapacity(const std::vector<Core>& cores) {
  const auto [least, most] =
      std::minmax_element(cores.begin(), cores.end(),
                          [](const Core& a, const Core& b) { return a.capacity < b.capacity; });
  constexpr std::int64_t kMostCapacity = 1024;  // the kernel scales the strongest core to this
  const bool isKnown = least->capacity > 0 && most->capacity <= kMostCapacity;
  if (!isKnown || least->capacity * 3 > most->capacity * 2) return -1;
  return least->capacity + least->capacity / 10;
}

// Which of the cores are efficiency cores, in their order.
std::vector<bool> efficientOnes(const std::vector<Core>& cores) {
  std::vector<bool> isEfficient;
  if (cores.empty()) return isEfficient;
  const bool hasAtoms =
      std::any_of(cores.begin(), cores.end(), [](const Core& core) { return core.isAtom; });
  const std::int64_t limit = efficiencyCapacity(cores);
  isEfficient.reserve(cores.size());
  for (const Core& core : cores) {
    isEfficient.push_back(hasAtoms ? core.isAtom : core.capacity <= limit);
  }
  return isEfficient;
}

}  // namespace

std::vector<int> parseCpuList(std::string_view text) {
  std::vector<int> numbers;
  bool isList = true;
  forEachPiece(text, ',', [&](std::string_view piece) {
    const auto hyphen = piece.find('-', 1);
    const auto first = wholeInteger(piece.substr(0, hyphen));
    const auto last =
        hyphen == std::string_view::npos ? first : wholeInteger(piece.substr(hyphen + 1));
    // A hostile list could name one range over and over.
    isList = isList && first && last && *first >= 0 && *first <= *last && *last <= kHighestCpu &&
             numbers.size() <= kHighestCpu;
    if (!isList) return;
    for (std::int64_t number = *first; number <= *last; ++number) {
      numbers.push_back(static_cast<int>(number));
    }
  });
  if (!isList) numbers.clear();
  return numbers;
}

std::optional<CoreCounts> countCores(const std::string& root) {
  const std::vector<Core> cores = physicalCores(root);
  if (cores.empty()) return std::nullopt;
  CoreCounts counts;
  for (const bool isEfficient : efficientOnes(cores)) {
    ++(isEfficient ? counts.efficiency : counts.performance);
  }
  return counts;
}

CpuCores coresOf(const std::string& root) {
  const std::vector<Core> cores = physicalCores(root);
  std::vector<bool> isCalm = efficientOnes(cores);
  if (std::find(isCalm.begin(), isCalm.end(), true) == isCalm.end()) {
    const std::size_t calm = std::max<std::size_t>(cores.size() / 4, 1);
    for (std::size_t i = 0; i < cores.size(); ++i) isCalm[i] = i + calm >= cores.size();
  }
  CpuCores numbers;
  for (std::size_t i = 0; i < cores.size(); ++i) {
    for (const int thread : parseCpuList(cores[i].threads)) {
      numbers.online.push_back(thread);
      if (isCalm[i]) numbers.calm.push_back(thread);
    }
  }
  std::sort(numbers.online.begin(), numbers.online.end());
  std::sort(numbers.calm.begin(), numbers.calm.end());
  return numbers;
}

}  // namespace embrix
