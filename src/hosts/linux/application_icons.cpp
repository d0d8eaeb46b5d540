#include "hosts/linux/application_icons.h"

#include <string_view>

#include "hosts/linux/desktop_entry.h"
#include "hosts/linux/rooted_path.h"
#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

constexpr std::string_view kEntrySuffix = ".desktop";
constexpr std::size_t kMostBytes = 1024 * 1024;

// A theme knows names without these; entries that were written before there were themes have them.
constexpr std::string_view kFormats[] = {".png", ".svg", ".xpm"};

std::string themed(std::string name) {
  for (const std::string_view format : kFormats) {
    if (name.size() > format.size() && name.ends_with(format)) {
      name.resize(name.size() - format.size());
      break;
    }
  }
  return name;
}

}  // namespace

std::optional<ApplicationIcon> LinuxApplicationIcons::iconOf(const std::string& bundlePath) {
  if (!bundlePath.starts_with('/') || !bundlePath.ends_with(kEntrySuffix)) return std::nullopt;
  // Exported entries are links to absolute paths.
  const auto real = resolvedPath(root_, bundlePath);
  const auto text = real ? readSystemFile(belowRoot(root_, *real), kMostBytes) : std::nullopt;
  const auto entry = text ? parseDesktopEntry(*text) : std::nullopt;
  if (!entry || entry->icon.empty()) return std::nullopt;
  if (entry->icon.starts_with('/')) {
    return ApplicationIcon{ApplicationIcon::Kind::picture, entry->icon};
  }
  // A name is no path.
  if (entry->icon.find('/') != std::string::npos) return std::nullopt;
  return ApplicationIcon{ApplicationIcon::Kind::named, themed(entry->icon)};
}

}  // namespace embrix
