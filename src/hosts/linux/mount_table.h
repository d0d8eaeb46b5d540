// Which volumes are mounted where, as the kernel tells a process about its own view of the files.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

class MountTable {
 public:
  // From the text of /proc/<pid>/mountinfo. Lines that do not read as a mount are passed over.
  explicit MountTable(std::string_view mountinfo);

  // Whether the path is where a volume is mounted, or a volume is mounted somewhere below it.
  bool holdsVolume(std::string_view path) const;

  // The folder of the volume that the path is on: the deepest mounted at or above it. Absent for a
  // path that is not absolute and when the table is empty.
  std::optional<std::string> volumeFolder(std::string_view path) const;

 private:
  std::vector<std::string> folders_;
};

}  // namespace embrix
