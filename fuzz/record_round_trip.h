// What holds of every text that is read as a record: it can be written, and what was written is
// read as the same record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace embrix {

template <typename Decode, typename Encode>
void checkRoundTrip(const std::uint8_t* data, std::size_t size, Decode decode, Encode encode) {
  const auto record = decode(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!record) return;
  const std::string written = encode(*record);
  const auto again = decode(std::string_view(written));
  if (!again || !(*again == *record)) std::abort();
}

}  // namespace embrix
