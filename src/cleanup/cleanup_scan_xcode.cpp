// The spots of Xcode and its simulators.
#include <utility>

#include <fmt/format.h>

#include "base/path_text.h"
#include "base/text.h"
#include "cleanup/cleanup_scan.h"

namespace embrix {

namespace {

// A project that was built within so many seconds may be open: 6 hours.
constexpr double kMayBeOpen = 21'600;

}  // namespace

CleanupScan::Items CleanupScan::derivedData(const Folder& folder) {
  Items items;
  for (const Folder& child : children(folder)) {
    auto item = itemAt(child);
    if (!item) continue;
    if (const auto info = infoIn(child.real)) {
      describeProject(*item, *info);
    } else {
      describeShared(*item, PathText::name(child.named));
    }
    items.push_back(std::move(*item));
  }
  return items;
}

std::optional<CleanupCatalog::DerivedDataInfo> CleanupScan::infoIn(
    const std::string& folder) const {
  const std::string path = PathText::joined(folder, "info.plist");
  const auto facts = ports_.folders.facts(path);
  if (!facts || facts->kind != FileKind::file) return std::nullopt;
  const auto data = ports_.files.read(path);
  return data ? CleanupCatalog::derivedDataInfo(*data) : std::nullopt;
}

void CleanupScan::describeProject(CleanupItem& item,
                                  const CleanupCatalog::DerivedDataInfo& info) const {
  item.title = Text::repaired(CleanupCatalog::projectName(info.workspace));
  item.detail = Text::repaired(CleanupCatalog::shortPath(info.workspace, bounds_.home()));
  if (info.lastAccessed) item.lastUsed = info.lastAccessed;
  if (ports_.folders.exists(info.workspace)) {
    item.consequence =
        fmt::format("{}'s next build starts from scratch, and Xcode re-indexes it.", item.title);
  } else {
    item.consequence = "The project isn't there any more, so nothing will rebuild it.";
    item.obsolete = "The project folder is gone";
  }
  const bool isRecent = item.lastUsed && now_ - *item.lastUsed < kMayBeOpen;
  item.inUse = inUseBy(running_.xcode && isRecent, "Xcode");
}

void CleanupScan::describeShared(CleanupItem& item, std::string_view name) const {
  if (name.starts_with("Unsaved_Xcode_Document")) {
    item.title = "Unsaved Xcode document";
    item.detail = "A document you never saved";
  } else {
    item.title = Text::repaired(CleanupCatalog::sharedCacheName(name));
    item.detail = "Shared by every project";
  }
  item.consequence = "Every project's next build takes a little longer while Xcode rebuilds it.";
  item.inUse = inUseBy(running_.xcode, "Xcode");
}

CleanupScan::Items CleanupScan::deviceSupport() {
  std::vector<std::pair<Folder, CleanupCatalog::DeviceSupportFolder>> found;
  std::vector<std::pair<std::string, CleanupCatalog::DeviceSupportFolder>> parsed;
  for (const Folder& platform : bounds_.deviceSupportFolders()) {
    for (const Folder& child : children(platform)) {
      auto folder = CleanupCatalog::deviceSupport(PathText::name(child.named),
                                                  PathText::name(platform.named));
      if (!folder) continue;
      parsed.emplace_back(child.named, *folder);
      found.emplace_back(child, std::move(*folder));
    }
  }
  const auto superseded = CleanupCatalog::supersededDeviceSupport(parsed);

  Items items;
  for (const auto& [place, folder] : found) {
    auto item = itemAt(place);
    if (!item) continue;
    const std::string system = fmt::format("{} {}", folder.platform, folder.version);
    item->title = Text::repaired(system);
    std::string detail = folder.model.value_or("");
    if (folder.build) {
      detail += fmt::format("{}build {}", detail.empty() ? "" : " · ", *folder.build);
    }
    if (!detail.empty()) item->detail = Text::repaired(detail);
    item->dateIsAdded = true;
    item->consequence = Text::repaired(fmt::format(
        "Plugging in a device on {} copies these again: a few minutes before you can debug on it.",
        system));
    const auto message = superseded.find(place.named);
    if (message != superseded.end()) item->obsolete = Text::repaired(message->second);
    items.push_back(std::move(*item));
  }
  return items;
}

CleanupScan::Items CleanupScan::unavailableSimulators(const Folder& folder) {
  const auto json = ports_.commands.successfulOutput(
      "/usr/bin/xcrun", {"simctl", "list", "devices", "unavailable", "-j"});
  if (!json) return {};
  Items items;
  for (const auto& simulator : CleanupCatalog::unavailableSimulators(*json)) {
    // Anything else could lead out of the devices.
    if (!CleanupCatalog::isDeviceIdentifier(simulator.udid)) continue;
    auto item = itemAt({.named = PathText::joined(folder.named, simulator.udid),
                        .real = PathText::joined(folder.real, simulator.udid)});
    if (!item) continue;
    item->id = simulator.udid;
    item->simulatorUDID = simulator.udid;
    item->title = simulator.name;
    item->detail = fmt::format("{}, not installed", simulator.runtime);
    item->consequence =
        "Its apps and data go with it. Xcode can't run it anyway: its runtime isn't installed.";
    item->obsolete = "Its runtime isn't installed";
    items.push_back(std::move(*item));
  }
  return items;
}

CleanupScan::Items CleanupScan::simulatorCaches(const CatalogPlace& place, const Folder& folder) {
  auto item = wholeFolder(place, folder);
  if (!item) return {};
  item->consequence = "The next simulator boot is slower while macOS rebuilds them.";
  item->inUse = inUseBy(running_.simulator, "A simulator");
  return {std::move(*item)};
}

CleanupScan::Items CleanupScan::archives(const Folder& folder) {
  auto item = itemAt(folder);
  if (!item || item->bytes < 1) return {};
  item->id = "Archives";
  // Without a path nothing can move it: archives are only shown.
  item->url.reset();
  item->title = "Xcode Archives";
  item->detail = "~/Library/Developer/Xcode/Archives";
  item->lastUsed = newest(folder);
  item->consequence =
      "Builds you archived, with the symbols that turn their crash reports into readable code. "
      "Delete old ones from Xcode's Organizer.";
  return {std::move(*item)};
}

}  // namespace embrix
