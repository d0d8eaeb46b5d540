// One place on the disk and what it holds. A plain record; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cleanup/cleanup_item.h"

namespace embrix {

struct CleanupSpot {
  enum class Kind {
    cache,                  // safe to clear, counted
    unavailableSimulators,  // removed through the simulator tool, counted
    review,                 // shown for review, not counted in totals, never suggested
  };

  // An item that was left alone for so long, in seconds, is unused: 30 days.
  static constexpr double kUnusedAge = 2'592'000;

  std::string id;     // stable: "derived-data"
  std::string title;  // user-facing
  std::string symbol;
  Kind kind = Kind::cache;
  std::vector<CleanupItem> items;     // largest first
  std::optional<std::string> folder;  // the one to reveal in the file browser

  // The items that no longer earn their place: obsolete or long unused, not in use, and of some
  // size. `now` in seconds since 1970.
  std::vector<CleanupItem> unused(double now) const;

  // Of all items together.
  std::int64_t bytes() const;

  bool operator==(const CleanupSpot&) const = default;
};

}  // namespace embrix
