#include "cleanup/cleanup_spot.h"

#include <algorithm>
#include <iterator>

namespace embrix {

namespace {

bool isUnused(const CleanupItem& item, double now) {
  if (item.inUse || item.bytes < 1) return false;
  if (item.obsolete) return true;
  return item.lastUsed && !item.dateIsAdded && now - *item.lastUsed >= CleanupSpot::kUnusedAge;
}

}  // namespace

std::vector<CleanupItem> CleanupSpot::unused(double now) const {
  std::vector<CleanupItem> unused;
  if (kind == Kind::review) return unused;
  std::copy_if(items.begin(), items.end(), std::back_inserter(unused),
               [now](const CleanupItem& item) { return isUnused(item, now); });
  return unused;
}

std::int64_t CleanupSpot::bytes() const {
  std::int64_t bytes = 0;
  for (const CleanupItem& item : items) bytes += item.bytes;
  return bytes;
}

}  // namespace embrix
