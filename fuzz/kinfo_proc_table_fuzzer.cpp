// Any bytes as the kernel's process table, decoded twice into one vector.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "darwin/kinfo_proc_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  static std::vector<RawProcess> reused;
  std::vector<RawProcess> fresh;
  decodeProcessTable({data, size}, fresh);
  decodeProcessTable({data, size}, reused);
  if (fresh != reused) std::abort();
  if (fresh.size() != size / kinfo_proc_layout::kSize) std::abort();
  for (const RawProcess& process : fresh) {
    if (process.commandName.size() > 16 || process.usage) std::abort();
  }
  return 0;
}
