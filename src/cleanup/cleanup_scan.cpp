#include "cleanup/cleanup_scan.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "base/path_text.h"
#include "base/text.h"

namespace embrix {

namespace {

// When `ps` fails nothing counts as running.
RunningTools runningTools(CommandRunner& commands) {
  const auto lines = commands.successfulOutput("/bin/ps", {"-axo", "args="}).value_or("");
  return RunningTools::from(Text::split(lines, '\n'));
}

// Largest first; those of one size stay in their order.
void keepWorthwhile(std::vector<CleanupItem>& items) {
  std::erase_if(items,
                [](const CleanupItem& item) { return item.bytes < CleanupScan::kLeastBytes; });
  std::stable_sort(items.begin(), items.end(),
                   [](const auto& a, const auto& b) { return a.bytes > b.bytes; });
}

}  // namespace

CleanupScan::CleanupScan(const CleanupPorts& ports, const std::string& home, double now,
                         ScanWatch& watch)
    : ports_(ports),
      bounds_(ports.folders, home),
      now_(now),
      watch_(watch),
      running_(runningTools(ports.commands)) {}

std::vector<CleanupSpot> CleanupScan::spots() {
  std::vector<CleanupSpot> spots;
  for (const CatalogPlace& place : catalogPlaces()) {
    if (watch_.abandoned()) break;
    CleanupSpot spot{.id = std::string(place.id),
                     .title = std::string(place.title),
                     .symbol = std::string(place.symbol),
                     .kind = place.kind,
                     .items = itemsOf(place),
                     .folder = bounds_.named(place)};
    keepWorthwhile(spot.items);
    spots.push_back(std::move(spot));
    watch_.spotDone();
  }
  return spots;
}

CleanupScan::Items CleanupScan::itemsOf(const CatalogPlace& place) {
  if (place.id == "device-support") return deviceSupport();
  const auto folder = bounds_.folder(place);
  if (!folder) return {};
  if (place.id == "derived-data") return derivedData(*folder);
  if (place.id == "unavailable-simulators") return unavailableSimulators(*folder);
  if (place.id == "simulator-caches") return simulatorCaches(place, *folder);
  if (place.id == "gradle") return gradle(*folder);
  if (place.id == "archives") return archives(*folder);
  return packageManager(place, *folder);
}

std::optional<CleanupItem> CleanupScan::itemAt(const Folder& folder) {
  if (watch_.abandoned()) return std::nullopt;
  const auto facts = ports_.folders.facts(folder.real);
  if (!facts || facts->kind != FileKind::folder) return std::nullopt;
  CleanupItem item;
  item.id = folder.named;
  item.url = folder.real;
  item.bytes = ports_.folders.measure(folder.real, watch_.measured()).value_or(0);
  item.lastUsed = facts->modified;
  item.identity = facts->identity;
  return item;
}

std::optional<CleanupItem> CleanupScan::wholeFolder(const CatalogPlace& place,
                                                    const Folder& folder) {
  auto item = itemAt(folder);
  if (!item) return std::nullopt;
  item->title = std::string(place.title);
  item->detail = shortened(folder);
  item->lastUsed = newest(folder);
  return item;
}

std::vector<CleanupScan::Folder> CleanupScan::children(const Folder& folder) const {
  std::vector<std::string> names;
  for (const FolderEntry& entry : ports_.folders.list(folder.real)) {
    if (entry.kind == FileKind::folder && !entry.hidden) names.push_back(entry.name);
  }
  std::sort(names.begin(), names.end());
  std::vector<Folder> children;
  for (const std::string& name : names) {
    children.push_back({.named = PathText::joined(folder.named, name),
                        .real = PathText::joined(folder.real, name)});
  }
  return children;
}

std::optional<double> CleanupScan::newest(const Folder& folder) const {
  std::optional<double> newest;
  if (const auto facts = ports_.folders.facts(folder.real)) newest = facts->modified;
  for (const FolderEntry& entry : ports_.folders.list(folder.real)) {
    newest = std::max(newest.value_or(entry.modified), entry.modified);
  }
  return newest;
}

std::string CleanupScan::shortened(const Folder& folder) const {
  const std::string inside = PathText::joined(folder.named, "inside");
  return Text::repaired(CleanupCatalog::shortPath(inside, bounds_.home()));
}

std::optional<std::string> CleanupScan::inUseBy(bool isRunning, std::string_view tool) {
  if (!isRunning) return std::nullopt;
  return fmt::format("{} is running", tool);
}

}  // namespace embrix
