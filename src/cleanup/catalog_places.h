// Where developers' disks fill up: the thirteen spots in their order, as plain data. Everything
// outside these folders is never looked at and never touched.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "cleanup/cleanup_spot.h"
#include "host/folder_source.h"

namespace embrix {

struct CatalogPlace {
  // What of the folder goes to the Trash at a time.
  enum class Clears { wholeFolder, eachChild, nothing };
  // Which of the user's base folders a tool uses where there are any, as on Linux.
  enum class Base { none, cache, data };

  std::string_view id;
  std::string_view title;
  std::string_view symbol;
  Clears clears = Clears::wholeFolder;
  std::string_view belowHome;  // where the tool keeps it
  Base base = Base::none;      // where it keeps it by the base-directory rules, none: as above
  std::string_view belowBase = {};
  CleanupSpot::Kind kind = CleanupSpot::Kind::cache;
};

inline constexpr std::size_t kCatalogPlaces = 13;

const std::array<CatalogPlace, kCatalogPlaces>& catalogPlaces();

// The place's folder, as a path.
std::string folderOf(const CatalogPlace& place, const std::string& home,
                     const std::optional<BaseFolders>& baseFolders);

}  // namespace embrix
