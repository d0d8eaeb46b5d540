// Any bytes as the kernel's block of arguments: nothing is told that is not in it, and nothing
// beyond the count.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "darwin/argument_block.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  const auto arguments = decodeArguments({data, size});
  if (arguments.empty()) return 0;
  const auto count = fieldAt<std::int32_t>({data, size}, 0);
  if (count < 1 || arguments.size() > static_cast<std::size_t>(count)) std::abort();

  std::string joined;
  for (const std::string& argument : arguments) {
    if (argument.find('\0') != std::string::npos) std::abort();
    joined += argument;
    joined += '\0';
  }
  std::string block(reinterpret_cast<const char*>(data), size);
  block += '\0';  // stands for the end of an unfinished last argument
  if (block.find(joined, argument_block_layout::kSmallestSize) == std::string::npos) std::abort();
  return 0;
}
