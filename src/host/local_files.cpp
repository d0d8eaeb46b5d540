#include "host/local_files.h"

#include "base/whole_file.h"

namespace embrix {

std::optional<std::string> LocalFiles::read(const std::string& path) {
  return readWholeFile(path, kMostBytes);
}

}  // namespace embrix
