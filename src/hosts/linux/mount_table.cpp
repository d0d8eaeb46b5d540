#include "hosts/linux/mount_table.h"

#include <algorithm>

#include "base/path_text.h"
#include "base/text.h"

namespace embrix {

namespace {

bool isOctal(char c) {
  return c >= '0' && c <= '7';
}

// The kernel writes blanks, tabs, line ends and backslashes as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
  constexpr std::size_t kEscape = 4;
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view escape = text.substr(i, kEscape);
    if (escape.size() == kEscape && escape[0] == '\\' &&
        std::all_of(escape.begin() + 1, escape.end(), isOctal)) {
      const int code = (escape[1] - '0') * 64 + (escape[2] - '0') * 8 + (escape[3] - '0');
      plain.push_back(static_cast<char>(code));
      i += kEscape - 1;
    } else {
      plain.push_back(text[i]);
    }
  }
  return plain;
}

}  // namespace

MountTable::MountTable(std::string_view mountinfo) {
  // Mount, parent, device, root within the file system, mount point, and more.
  constexpr std::size_t kMountPoint = 4;
  for (const auto line : Text::split(mountinfo, '\n')) {
    const auto fields = Text::split(line, ' ');
    if (fields.size() <= kMountPoint || !fields[kMountPoint].starts_with('/')) continue;
    folders_.push_back(unescaped(fields[kMountPoint]));
  }
}

bool MountTable::holdsVolume(std::string_view path) const {
  return std::any_of(folders_.begin(), folders_.end(), [&](const std::string& folder) {
    return PathText::isAtOrBelow(folder, path);
  });
}

std::optional<std::string> MountTable::volumeFolder(std::string_view path) const {
  const std::string* deepest = nullptr;
  for (const std::string& folder : folders_) {
    if (!PathText::isAtOrBelow(path, folder)) continue;
    if (deepest == nullptr || folder.size() > deepest->size()) deepest = &folder;
  }
  if (deepest == nullptr) return std::nullopt;
  return *deepest;
}

}  // namespace embrix
