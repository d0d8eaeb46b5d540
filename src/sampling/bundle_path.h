// Finds the application bundle that a path leads into. Pure.
#pragma once

#include <optional>
#include <string_view>

namespace embrix {

// Up to and with the first ".app" that is a folder in the path, so that a helper deep inside nested
// bundles belongs to the outermost; absent when there is none. A view into `path`.
std::optional<std::string_view> outermostBundle(std::string_view path);

}  // namespace embrix
