#include "cleanup/cleanup_bounds.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/path_text.h"

namespace embrix {

namespace {

constexpr std::string_view kXcodeFolder = "Library/Developer/Xcode";
constexpr std::string_view kDeviceSupport = "DeviceSupport";

}  // namespace

CleanupBounds::CleanupBounds(FolderSource& folders, std::string home)
    : folders_(folders),
      home_(std::move(home)),
      realHome_(folders.resolved(home_)),
      baseFolders_(folders.baseFolders()) {}

std::string CleanupBounds::named(const CatalogPlace& place) const {
  return folderOf(place, home_, baseFolders_);
}

std::optional<CleanupBounds::Folder> CleanupBounds::folder(const CatalogPlace& place) const {
  return resolved(named(place));
}

std::optional<CleanupBounds::Folder> CleanupBounds::resolved(std::string named) const {
  auto real = folders_.resolved(named);
  if (!real || !realHome_ || !PathText::isBelow(*real, *realHome_)) return std::nullopt;
  return Folder{.named = std::move(named), .real = std::move(*real)};
}

std::vector<CleanupBounds::Folder> CleanupBounds::deviceSupportFolders() const {
  std::vector<Folder> found;
  const auto xcode = resolved(PathText::joined(home_, kXcodeFolder));
  if (!xcode) return found;
  for (const FolderEntry& entry : folders_.list(xcode->real)) {
    if (entry.hidden || !entry.name.ends_with(kDeviceSupport)) continue;
    if (entry.kind != FileKind::folder && entry.kind != FileKind::link) continue;
    if (auto folder = resolved(PathText::joined(xcode->named, entry.name))) {
      found.push_back(std::move(*folder));
    }
  }
  std::sort(found.begin(), found.end(),
            [](const Folder& a, const Folder& b) { return a.named < b.named; });
  return found;
}

bool CleanupBounds::mayMove(const std::string& url) const {
  if (!realHome_ || !PathText::isBelow(url, *realHome_)) return false;
  const std::string_view parent = PathText::parent(url);
  for (const CatalogPlace& place : catalogPlaces()) {
    if (place.clears == CatalogPlace::Clears::nothing) continue;
    const bool isWhole = place.clears == CatalogPlace::Clears::wholeFolder;
    if ((isWhole ? std::string_view(url) : parent) == expected(named(place))) return true;
  }
  return isDeviceSupport(parent);
}

// Where the folder is, or would be with everything above it as it is now.
std::string CleanupBounds::expected(const std::string& named) const {
  if (auto real = folders_.resolved(named)) return std::move(*real);
  const std::string_view parent = PathText::parent(named);
  if (parent.empty() || parent == named) return named;
  return PathText::joined(expected(std::string(parent)), PathText::name(named));
}

bool CleanupBounds::isDeviceSupport(std::string_view folder) const {
  const std::string xcode = expected(PathText::joined(home_, kXcodeFolder));
  if (PathText::parent(folder) == xcode && PathText::name(folder).ends_with(kDeviceSupport)) {
    return true;
  }
  const auto found = deviceSupportFolders();
  return std::any_of(found.begin(), found.end(),
                     [&](const Folder& each) { return each.real == folder; });
}

}  // namespace embrix
