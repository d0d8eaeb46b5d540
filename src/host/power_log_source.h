#pragma once

#include <cstddef>
#include <string>

namespace embrix {

class PowerLogSource {
 public:
  virtual ~PowerLogSource() = default;

  // Bytes at the log's end that anybody looks at.
  static constexpr std::size_t kMostBytes = std::size_t{16} << 20;

  // The system's log of sleep and wake, bytes as they come, oldest line first; empty when there is
  // none. Can take seconds: never called on the main or the sampling thread.
  virtual std::string read() = 0;
};

}  // namespace embrix
