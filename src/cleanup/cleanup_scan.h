// One pass over the catalogue: what stands in each spot, how large it is, and what it means. Blocks
// for as long as the disk takes; not for the main thread. Reads and moves nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cleanup/catalog_places.h"
#include "cleanup/cleanup_bounds.h"
#include "cleanup/cleanup_catalog.h"
#include "cleanup/cleanup_ports.h"
#include "cleanup/cleanup_spot.h"
#include "cleanup/running_tools.h"
#include "cleanup/scan_watch.h"

namespace embrix {

class CleanupScan {
 public:
  // Smaller items are not worth a line.
  static constexpr std::int64_t kLeastBytes = 1'000'000;

  // `now` in seconds since 1970.
  CleanupScan(const CleanupPorts& ports, const std::string& home, double now, ScanWatch& watch);

  // All spots in the catalogue's order, those without items too. Whatever it has when the watch is
  // abandoned.
  std::vector<CleanupSpot> spots();

 private:
  using Folder = CleanupBounds::Folder;
  using Items = std::vector<CleanupItem>;

  Items itemsOf(const CatalogPlace& place);
  Items derivedData(const Folder& folder);
  Items deviceSupport();
  Items unavailableSimulators(const Folder& folder);
  Items simulatorCaches(const CatalogPlace& place, const Folder& folder);
  Items gradle(const Folder& folder);
  Items packageManager(const CatalogPlace& place, const Folder& folder);
  Items archives(const Folder& folder);

  // A build folder of one project, and one that all projects share.
  void describeProject(CleanupItem& item, const CleanupCatalog::DerivedDataInfo& info) const;
  void describeShared(CleanupItem& item, std::string_view name) const;
  std::optional<CleanupCatalog::DerivedDataInfo> infoIn(const std::string& folder) const;

  // The item of a folder: what and where it is, how large, and when it changed. Absent when it is
  // no folder or cannot be read.
  std::optional<CleanupItem> itemAt(const Folder& folder);
  // The same, called as the place is and as old as the newest thing in it.
  std::optional<CleanupItem> wholeFolder(const CatalogPlace& place, const Folder& folder);

  // The folders in it that are not hidden, by name.
  std::vector<Folder> children(const Folder& folder) const;
  // The newest date of the folder and of what is directly in it, seconds since 1970.
  std::optional<double> newest(const Folder& folder) const;
  std::string shortened(const Folder& folder) const;
  static std::optional<std::string> inUseBy(bool isRunning, std::string_view tool);

  CleanupPorts ports_;
  CleanupBounds bounds_;
  double now_ = 0;
  ScanWatch& watch_;
  RunningTools running_;
};

}  // namespace embrix
