// Any bytes as the kernel's record of a process's directories. Most are refused for their size: the
// same again as the path in such a record.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "darwin/working_directory.h"

namespace {

void check(const std::optional<std::string>& path) {
  if (!path) return;
  if (path->empty() || path->size() > embrix::vnode_path_layout::kPathCapacity) std::abort();
  if (path->find('\0') != std::string::npos) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  check(decodeWorkingDirectory({data, size}));

  using namespace vnode_path_layout;
  std::array<std::uint8_t, kSize> record{};
  std::copy_n(data, std::min(size, kSize - kDirectoryOffset), record.begin() + kDirectoryOffset);
  const auto path = decodeWorkingDirectory(record);
  check(path);
  if (path.has_value() != (size > 0 && data[0] != 0)) std::abort();
  return 0;
}
