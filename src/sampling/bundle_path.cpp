#include "sampling/bundle_path.h"

namespace embrix {

std::optional<std::string_view> outermostBundle(std::string_view path) {
  constexpr std::string_view kSuffix = ".app";
  const std::size_t found = path.find(".app/");
  if (found == std::string_view::npos) return std::nullopt;
  return path.substr(0, found + kSuffix.size());
}

}  // namespace embrix
