// Any bytes as the kernel's record of what a process used: of the right size it is one, of any
// other size it is none.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "darwin/usage_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto usage = embrix::decodeUsage({data, size});
  if (usage.has_value() != (size == embrix::usage_layout::kSize)) std::abort();
  if (usage && !usage->energyNJ) std::abort();
  return 0;
}
