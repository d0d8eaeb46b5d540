// Whom a process belongs to.
#pragma once

#include <cstdint>
#include <optional>

#include "base/shared_text.h"
#include "frame/app_info.h"

namespace embrix {

struct GroupIdentity {
  // The stable name of the group in history, ledgers and rules. One of: a bundle identifier,
  // "named:" and a display name, an executable path, a bare process name, "system".
  SharedText key;
  SharedText name;           // what a person reads
  std::int32_t rootPID = 0;  // the process at the top of the group
  std::optional<AppInfo> app;

  bool operator==(const GroupIdentity&) const = default;
};

}  // namespace embrix
