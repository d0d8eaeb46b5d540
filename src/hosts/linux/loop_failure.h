// What a main loop cannot be without.
#pragma once

#include <system_error>

namespace embrix {

// Throws for a negative result of the system's, which is an errno's.
inline void requireForLoop(int result) {
  if (result >= 0) return;
  throw std::system_error(-result, std::generic_category(),
                          "the system cannot keep this run going");
}

}  // namespace embrix
