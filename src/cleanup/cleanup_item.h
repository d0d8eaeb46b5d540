// One thing that can be cleared. A plain record; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/folder_source.h"

namespace embrix {

struct CleanupItem {
  std::string id;                     // its path, a simulator's udid, or "Archives"
  std::string title;                  // what it is
  std::optional<std::string> detail;  // a second line: a short path, a place, a build
  std::optional<std::string> url;     // the path of what is moved to the Trash, no link in it
  std::int64_t bytes = 0;             // on the disk
  std::optional<double> lastUsed;     // last sign of use, seconds since 1970
  bool dateIsAdded = false;           // lastUsed only says when it was added, so age means nothing
  std::string consequence;            // what clearing it costs, in one sentence
  std::optional<std::string> inUse;   // why it can't be cleared now: "Xcode is running"
  std::optional<std::string> obsolete;  // why nothing will miss it: "The project folder is gone"
  std::optional<std::string> simulatorUDID;  // set: clearing goes through the simulator tool
  // Which thing was measured. Clearing moves that one or nothing; absent, nothing.
  std::optional<FileIdentity> identity;

  bool operator==(const CleanupItem&) const = default;
};

}  // namespace embrix
