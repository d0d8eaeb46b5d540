// The file that tells whose a build folder is, with any bytes in it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "cleanup/cleanup_catalog.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto info = CleanupCatalog::derivedDataInfo(bytes);
  if (!info) return 0;
  if (!info->workspace.starts_with('/')) std::abort();
  CleanupCatalog::projectName(info->workspace);
  // A home folder is shortened away at whole components alone.
  const std::string folder = CleanupCatalog::shortPath(info->workspace, "/Users/me");
  if (folder.starts_with('~') && folder != "~" && !folder.starts_with("~/")) std::abort();
  return 0;
}
