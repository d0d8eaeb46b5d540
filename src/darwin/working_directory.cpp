#include "darwin/working_directory.h"

namespace embrix {

std::optional<std::string> decodeWorkingDirectory(Bytes record) {
  using namespace vnode_path_layout;
  if (record.size() != kSize) return std::nullopt;
  const std::string_view path = textFieldAt(record, kDirectoryOffset, kPathCapacity);
  if (path.empty()) return std::nullopt;
  return std::string(path);
}

}  // namespace embrix
