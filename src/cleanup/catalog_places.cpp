#include "cleanup/catalog_places.h"

#include "base/path_text.h"

namespace embrix {

const std::array<CatalogPlace, kCatalogPlaces>& catalogPlaces() {
  using Clears = CatalogPlace::Clears;
  using Base = CatalogPlace::Base;
  using Kind = CleanupSpot::Kind;
  static constexpr std::array<CatalogPlace, kCatalogPlaces> kPlaces = {{
      {.id = "derived-data",
       .title = "Xcode DerivedData",
       .symbol = "hammer.fill",
       .clears = Clears::eachChild,
       .belowHome = "Library/Developer/Xcode/DerivedData"},
      // The folder is iOS's; those of the other platforms stand beside it.
      {.id = "device-support",
       .title = "Device support files",
       .symbol = "iphone",
       .clears = Clears::eachChild,
       .belowHome = "Library/Developer/Xcode/iOS DeviceSupport"},
      {.id = "unavailable-simulators",
       .title = "Unavailable simulators",
       .symbol = "xmark.rectangle",
       .clears = Clears::nothing,
       .belowHome = "Library/Developer/CoreSimulator/Devices",
       .kind = Kind::unavailableSimulators},
      {.id = "simulator-caches",
       .title = "Simulator caches",
       .symbol = "ipad.and.iphone",
       .belowHome = "Library/Developer/CoreSimulator/Caches"},
      {.id = "gradle",
       .title = "Gradle caches",
       .symbol = "cube.fill",
       .clears = Clears::eachChild,
       .belowHome = ".gradle/caches"},
      {.id = "npm", .title = "npm cache", .symbol = "cube.box.fill", .belowHome = ".npm/_cacache"},
      {.id = "pnpm",
       .title = "pnpm store",
       .symbol = "cube.box",
       .belowHome = "Library/pnpm/store",
       .base = Base::data,
       .belowBase = "pnpm/store"},
      {.id = "yarn",
       .title = "Yarn cache",
       .symbol = "cube",
       .belowHome = "Library/Caches/Yarn",
       .base = Base::cache,
       .belowBase = "yarn"},
      {.id = "swiftpm",
       .title = "Swift packages",
       .symbol = "shippingbox.fill",
       .belowHome = "Library/Caches/org.swift.swiftpm",
       .base = Base::cache,
       .belowBase = "org.swift.swiftpm"},
      {.id = "cocoapods",
       .title = "CocoaPods cache",
       .symbol = "shippingbox",
       .belowHome = "Library/Caches/CocoaPods"},
      {.id = "homebrew",
       .title = "Homebrew downloads",
       .symbol = "mug.fill",
       .belowHome = "Library/Caches/Homebrew",
       .base = Base::cache,
       .belowBase = "Homebrew"},
      {.id = "pip",
       .title = "pip cache",
       .symbol = "terminal.fill",
       .belowHome = "Library/Caches/pip",
       .base = Base::cache,
       .belowBase = "pip"},
      {.id = "archives",
       .title = "Archives",
       .symbol = "archivebox.fill",
       .clears = Clears::nothing,
       .belowHome = "Library/Developer/Xcode/Archives",
       .kind = Kind::review},
  }};
  return kPlaces;
}

std::string folderOf(const CatalogPlace& place, const std::string& home,
                     const std::optional<BaseFolders>& baseFolders) {
  if (!baseFolders || place.base == CatalogPlace::Base::none) {
    return PathText::joined(home, place.belowHome);
  }
  const bool isCache = place.base == CatalogPlace::Base::cache;
  return PathText::joined(isCache ? baseFolders->cache : baseFolders->data, place.belowBase);
}

}  // namespace embrix
