#include "cleanup/catalog_places.h"

#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

using Kind = CleanupSpot::Kind;

struct Row {
  std::string_view id, title, symbol, onMac, onLinux;
  Kind kind = Kind::cache;
};

const Row kRows[] = {
    {"derived-data", "Xcode DerivedData", "hammer.fill", "Library/Developer/Xcode/DerivedData",
     "Library/Developer/Xcode/DerivedData"},
    {"device-support", "Device support files", "iphone",
     "Library/Developer/Xcode/iOS DeviceSupport", "Library/Developer/Xcode/iOS DeviceSupport"},
    {"unavailable-simulators", "Unavailable simulators", "xmark.rectangle",
     "Library/Developer/CoreSimulator/Devices", "Library/Developer/CoreSimulator/Devices",
     Kind::unavailableSimulators},
    {"simulator-caches", "Simulator caches", "ipad.and.iphone",
     "Library/Developer/CoreSimulator/Caches", "Library/Developer/CoreSimulator/Caches"},
    {"gradle", "Gradle caches", "cube.fill", ".gradle/caches", ".gradle/caches"},
    {"npm", "npm cache", "cube.box.fill", ".npm/_cacache", ".npm/_cacache"},
    {"pnpm", "pnpm store", "cube.box", "Library/pnpm/store", ".local/share/pnpm/store"},
    {"yarn", "Yarn cache", "cube", "Library/Caches/Yarn", ".cache/yarn"},
    {"swiftpm", "Swift packages", "shippingbox.fill", "Library/Caches/org.swift.swiftpm",
     ".cache/org.swift.swiftpm"},
    {"cocoapods", "CocoaPods cache", "shippingbox", "Library/Caches/CocoaPods",
     "Library/Caches/CocoaPods"},
    {"homebrew", "Homebrew downloads", "mug.fill", "Library/Caches/Homebrew", ".cache/Homebrew"},
    {"pip", "pip cache", "terminal.fill", "Library/Caches/pip", ".cache/pip"},
    {"archives", "Archives", "archivebox.fill", "Library/Developer/Xcode/Archives",
     "Library/Developer/Xcode/Archives", Kind::review},
};

TEST(CatalogPlacesTest, ThirteenPlacesInTheirOrderOnBothSystems) {
  const BaseFolders base{.cache = "/home/ada/.cache", .data = "/home/ada/.local/share"};
  ASSERT_EQ(catalogPlaces().size(), std::size(kRows));
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    const CatalogPlace& place = catalogPlaces()[i];
    const Row& row = kRows[i];
    EXPECT_EQ(place.id, row.id);
    EXPECT_EQ(place.title, row.title);
    EXPECT_EQ(place.symbol, row.symbol);
    EXPECT_EQ(place.kind, row.kind) << row.id;
    EXPECT_EQ(folderOf(place, "/Users/ada", std::nullopt), "/Users/ada/" + std::string(row.onMac));
    EXPECT_EQ(folderOf(place, "/home/ada", base), "/home/ada/" + std::string(row.onLinux));
  }
}

TEST(CatalogPlacesTest, ABaseFolderElsewhereIsFollowed) {
  const BaseFolders base{.cache = "/home/ada/quick", .data = "/home/ada/kept"};
  EXPECT_EQ(folderOf(catalogPlaces()[6], "/home/ada", base), "/home/ada/kept/pnpm/store");
  EXPECT_EQ(folderOf(catalogPlaces()[11], "/home/ada", base), "/home/ada/quick/pip");
}

TEST(CatalogPlacesTest, WhatIsOnlyShownOrDeletedByItsToolIsNeverMoved) {
  for (const CatalogPlace& place : catalogPlaces()) {
    const bool neverMoved = place.kind != Kind::cache;
    EXPECT_EQ(place.clears == CatalogPlace::Clears::nothing, neverMoved) << place.id;
  }
}

}  // namespace
}  // namespace embrix
