// The record that travels to the system management controller and back, and the values in it.
// Says how bytes lie, not which keys exist nor how the call is made. Any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "host/smc_source.h"

namespace embrix {

// Places within the 80 bytes of the record. What lies between them (version, limits, attributes,
// status, a word of data, padding) is zero on the way in and not looked at on the way out.
namespace smc_layout {
inline constexpr std::size_t kKeyOffset = 0;        // 4 bytes, host order
inline constexpr std::size_t kDataSizeOffset = 28;  // 4 bytes, host order: size of the value
inline constexpr std::size_t kDataTypeOffset = 32;  // 4 bytes, host order: type of the value
inline constexpr std::size_t kResultOffset = 40;    // 1 byte, out: 0 is success
inline constexpr std::size_t kCommandOffset = 42;   // 1 byte, in
inline constexpr std::size_t kBytesOffset = 48;     // 32 bytes, out: the value
inline constexpr std::size_t kBytesSize = 32;
static_assert(kBytesOffset + kBytesSize == kSmcPacketSize);
}  // namespace smc_layout

// The selector of the controller's one structured call, for IOConnectCallStructMethod.
inline constexpr std::uint32_t kSmcCallSelector = 2;

// What a record asks for.
inline constexpr std::uint8_t kSmcReadValue = 5;
inline constexpr std::uint8_t kSmcReadKeyInfo = 9;

struct Packet {
  std::uint32_t key = 0;       // four-character code
  std::uint32_t dataSize = 0;  // bytes of the value
  std::uint32_t dataType = 0;  // four-character code; zero on the way in
  std::uint8_t result = 0;     // 0 is success
  std::uint8_t command = 0;    // kSmcReadValue or kSmcReadKeyInfo
  std::array<std::uint8_t, smc_layout::kBytesSize> bytes{};

  SmcPacketBytes encode() const;
  static Packet decode(const SmcPacketBytes& record);

  // The first `size` of `bytes`, all of them when `size` is larger: controllers have keys whose
  // values do not fit the record.
  std::span<const std::uint8_t> value(std::uint32_t size) const;

  bool operator==(const Packet&) const = default;
};

// The first four bytes of the text in one number, the first of them highest. Fewer bytes give fewer
// shifts: "A" is 0x41, the empty text 0.
constexpr std::uint32_t fourCC(std::string_view text) {
  std::uint32_t code = 0;
  for (const char character : text.substr(0, 4)) {
    code = code << 8 | static_cast<std::uint8_t>(character);
  }
  return code;
}

// The number that a value of that type stands for: `flt ` (little-endian float), `ui8 `, `ui16`
// (big-endian), `fpe2` (big-endian quarters). Absent for any other type, for too few bytes, and for
// a float that is no number or not finite. Bytes past the type's own size are not looked at.
std::optional<double> smcValue(std::uint32_t type, std::span<const std::uint8_t> bytes);

}  // namespace embrix
