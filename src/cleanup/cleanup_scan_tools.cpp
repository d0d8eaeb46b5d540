// The spots of Gradle and of the package managers.
#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

#include "base/path_text.h"
#include "base/text.h"
#include "cleanup/cleanup_scan.h"

namespace embrix {

namespace {

struct PackageManager {
  std::string_view place;
  std::string_view tool;
  std::string_view consequence;
};

constexpr std::array<PackageManager, 7> kPackageManagers = {{
    {"npm", "npm",
     "Your next npm install downloads its packages again. Installs fail offline until then."},
    {"pnpm", "pnpm",
     "Your next pnpm install downloads its packages again. Installs fail offline until then."},
    {"yarn", "yarn", "Your next yarn install downloads its packages again."},
    {"swiftpm", "swift", "Swift packages download again the next time a project resolves them."},
    {"cocoapods", "pod", "Your next pod install downloads its pods again."},
    {"homebrew", "brew",
     "Nothing you've installed changes. Homebrew downloads again only to reinstall."},
    {"pip", "pip", "Your next pip install downloads its wheels again."},
}};

struct Wording {
  std::string title;
  std::string consequence;
};

Wording gradleWording(const std::string& name) {
  if (name == "modules-2") {
    return {"Downloaded dependencies",
            "Every Android project downloads its dependencies again on its next build. Builds fail "
            "offline until then."};
  }
  if (name == "build-cache-1") {
    return {"Build cache", "Android builds redo work they'd have reused. Nothing is lost."};
  }
  if (name.front() >= '0' && name.front() <= '9') {
    return {fmt::format("Gradle {}", name),
            fmt::format("Projects on Gradle {} rebuild its caches on their next build.", name)};
  }
  return {name, "Gradle rebuilds it on the next build."};
}

}  // namespace

CleanupScan::Items CleanupScan::gradle(const Folder& folder) {
  Items items;
  for (const Folder& child : children(folder)) {
    auto item = itemAt(child);
    if (!item || item->bytes < 1) continue;
    const std::string name = Text::repaired(PathText::name(child.named));
    auto wording = gradleWording(name);
    item->title = std::move(wording.title);
    item->consequence = std::move(wording.consequence);
    item->detail = fmt::format("~/.gradle/caches/{}", name);
    item->lastUsed = newest(child);
    item->inUse = inUseBy(running_.gradle, "Gradle");
    items.push_back(std::move(*item));
  }
  return items;
}

CleanupScan::Items CleanupScan::packageManager(const CatalogPlace& place, const Folder& folder) {
  const auto manager =
      std::find_if(kPackageManagers.begin(), kPackageManagers.end(),
                   [&](const PackageManager& each) { return each.place == place.id; });
  if (manager == kPackageManagers.end()) return {};
  auto item = wholeFolder(place, folder);
  if (!item) return {};
  item->consequence = std::string(manager->consequence);
  item->inUse = inUseBy(running_.installers.count(manager->tool) > 0, manager->tool);
  return {std::move(*item)};
}

}  // namespace embrix
