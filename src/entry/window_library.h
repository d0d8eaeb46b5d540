// The module of the windows, loaded when a window is wanted. Main thread.
#pragma once

#include <string>
#include <variant>

#include "surfaces/window_module.h"

namespace embrix {

struct WindowLibrary {
  // The file's name; it stands beside the program.
  static constexpr const char* kFileName = "embrix_surfaces.so";

  // Stays loaded for good: a toolkit does not bear to be unloaded. A problem is one sentence
  // without a full stop.
  static std::variant<const WindowModule*, std::string> load(const std::string& programPath);
};

}  // namespace embrix
