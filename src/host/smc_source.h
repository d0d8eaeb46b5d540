// The system management controller's keys, or what answers in their place. Sampling thread only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace embrix {

inline constexpr std::size_t kSmcPacketSize = 80;
using SmcPacketBytes = std::array<std::uint8_t, kSmcPacketSize>;

class SmcSource {
 public:
  virtual ~SmcSource() = default;

  // False on a machine without a controller. Constant.
  virtual bool isOpen() = 0;

  // One exchange of records. False when the call itself failed; `output` is then not to be read.
  virtual bool call(const SmcPacketBytes& input, SmcPacketBytes& output) = 0;
};

}  // namespace embrix
