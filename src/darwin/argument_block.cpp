#include "darwin/argument_block.h"

#include <algorithm>

namespace embrix {

std::vector<std::string> decodeArguments(Bytes block) {
  using namespace argument_block_layout;
  if (block.size() < kSmallestSize) return {};
  const auto count = fieldAt<std::int32_t>(block, 0);
  if (count < 1) return {};

  const auto isNul = [](std::uint8_t byte) { return byte == 0; };
  const auto pathEnd = std::find_if(block.begin() + kCountSize, block.end(), isNul);
  auto next = std::find_if_not(pathEnd, block.end(), isNul);

  // Nothing is reserved by the count: it is the process's word, and the block may be far smaller.
  std::vector<std::string> arguments;
  while (next != block.end() && arguments.size() < static_cast<std::size_t>(count)) {
    const auto end = std::find_if(next, block.end(), isNul);
    arguments.emplace_back(next, end);
    next = end == block.end() ? end : end + 1;
  }
  return arguments;
}

}  // namespace embrix
