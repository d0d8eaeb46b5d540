// Clearing, away from the main thread.
#include "cleanup/cleanup.h"
#include "cleanup/cleanup_bounds.h"
#include "cleanup/cleanup_catalog.h"

namespace embrix {

namespace {

bool deleteSimulator(const std::string& udid, CommandRunner& commands) {
  // The tool also takes words for many devices at once, such as "all".
  return CleanupCatalog::isDeviceIdentifier(udid) &&
         commands.successfulOutput("/usr/bin/xcrun", {"simctl", "delete", udid}).has_value();
}

TrashMove moveItem(const CleanupItem& item, const CleanupBounds& bounds, Trash& trash) {
  if (!item.identity || !bounds.mayMove(*item.url)) return {};
  return trash.moveToTrash(*item.url, *item.identity);
}

}  // namespace

Cleanup::Performed Cleanup::perform(const std::vector<CleanupItem>& items,
                                    const CleanupPorts& ports, const std::string& home) {
  Performed performed;
  const CleanupBounds bounds(ports.folders, home);
  for (const CleanupItem& item : items) {
    if (item.simulatorUDID) {
      const bool isDeleted = deleteSimulator(*item.simulatorUDID, ports.commands);
      if (isDeleted) performed.cleared.insert(item.id);
      ++(isDeleted ? performed.deleted : performed.failed);
      continue;
    }
    if (!item.url) continue;
    const TrashMove move = moveItem(item, bounds, ports.trash);
    if (move.outcome == TrashOutcome::failed) {
      performed.failed += 1;
      continue;
    }
    performed.cleared.insert(item.id);
    if (move.trashed) {
      performed.moves.push_back(
          {.original = *item.url, .trashed = *move.trashed, .identity = *item.identity});
    }
  }
  return performed;
}

}  // namespace embrix
