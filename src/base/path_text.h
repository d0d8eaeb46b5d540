// Absolute paths taken apart as text. Nothing here looks at the disk, so "." and ".." mean nothing
// and a link is a name like any other. Slashes at a path's end do not count, "/" aside. Any bytes.
#pragma once

#include <string>
#include <string_view>

namespace embrix {

struct PathText {
  // The last component; empty for "/" and for no path at all. A view into `path`.
  static std::string_view name(std::string_view path);

  // The folder that the path is in: "/" for "/a" and for "/", empty for a bare name. A view into
  // `path`.
  static std::string_view parent(std::string_view path);

  // Whether `path` is `folder` or leads below it, whole components counting alone: "/a/bc" is not
  // at or below "/a/b".
  static bool isAtOrBelow(std::string_view path, std::string_view folder);

  // The same, less the folder itself.
  static bool isBelow(std::string_view path, std::string_view folder);

  // What leads from the folder to the path, no slash at its front; empty unless isBelow(). A view
  // into `path`.
  static std::string_view below(std::string_view path, std::string_view folder);

  static std::string joined(std::string_view folder, std::string_view name);
};

}  // namespace embrix
