#include "frame/app_group.h"

#include <algorithm>

#include "base/hash_map.h"

namespace embrix {

std::vector<ProcessBundle> AppGroup::bundles() const {
  std::vector<ProcessBundle> bundles;
  HashMap<SharedText, std::size_t> indexByName;
  for (const ProcessRow& row : processes) {
    auto [entry, isNew] = indexByName.try_emplace(row.name, bundles.size());
    if (isNew) bundles.push_back({.name = row.name, .heaviest = row});
    ProcessBundle& bundle = bundles[entry->second];
    bundle.count += 1;
    bundle.watts += row.watts;
    bundle.cpuPercent += row.cpuPercent;
  }
  std::stable_sort(bundles.begin(), bundles.end(),
                   [](const auto& a, const auto& b) { return a.watts > b.watts; });
  return bundles;
}

}  // namespace embrix
