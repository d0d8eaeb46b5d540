// The block that `sysctl` gives for CTL_KERN, KERN_PROCARGS2 and a pid: a 32-bit count of arguments
// in host order, the executable's path, NUL bytes of padding, the arguments, each ended by a NUL,
// and behind them the environment, which is private to the process and never looked at. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "darwin/byte_fields.h"

namespace embrix {

namespace argument_block_layout {
inline constexpr std::size_t kCountSize = 4;
inline constexpr std::size_t kSmallestSize = 5;  // the count and one byte of a path
}  // namespace argument_block_layout

// The argument vector, the program first, each as the process gave it (any bytes, not repaired).
// Empty when the block is too small, or ends within the path or the padding. A block that ends
// before its count is reached gives what it has, the unfinished last argument among it.
std::vector<std::string> decodeArguments(Bytes block);

}  // namespace embrix
