#include "hosts/macos/application_icons.h"

#include <sys/stat.h>

namespace embrix {

std::optional<ApplicationIcon> MacApplicationIcons::iconOf(const std::string& bundlePath) {
  struct stat status = {};
  if (::stat(bundlePath.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return std::nullopt;
  return ApplicationIcon{ApplicationIcon::Kind::ofBundle, bundlePath};
}

}  // namespace embrix
