// The application that an executable belongs to.
#pragma once

#include <optional>

#include "base/shared_text.h"

namespace embrix {

struct AppInfo {
  SharedText name;                       // what a person reads
  std::optional<SharedText> bundleID;    // such as "org.mozilla.firefox"
  std::optional<SharedText> bundlePath;  // the bundle's folder, or what stands for it on the host

  bool operator==(const AppInfo&) const = default;
};

}  // namespace embrix
