// Names that a person can read for processes that developers and the system run.
//
// Pure, and callable on any thread. A name that the table knows and a name that stays as it is are
// answered without allocating.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/hash_map.h"
#include "base/shared_text.h"

namespace embrix {

struct FriendlyName {
  // One process that is known by name.
  struct Row {
    SharedText processName;
    SharedText displayName;
    std::optional<SharedText> bundleID;  // the application whose icon stands for it
    SharedText groupKey;                 // of the display name
  };

  // All known processes. Several can share a display name, and with it a group.
  static const std::vector<Row>& table();

  // The row of that process name, null when it is not known.
  static const Row* row(const SharedText& processName);

  // What to show for a process name: the table's display name; of a reversed domain name like
  // "com.example.Updater" its last piece if that has at least 4 characters; else the name itself.
  static SharedText name(const SharedText& processName);

  // The key of the group that a display name stands for: "named:" and the name.
  static SharedText groupKey(const SharedText& displayName);

  // Application identifiers by process name and by display name.
  static const HashMap<SharedText, SharedText>& bundleByName();
};

}  // namespace embrix
