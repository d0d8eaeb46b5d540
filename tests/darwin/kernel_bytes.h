// Records of the kernel made by hand, field by field.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string_view>
#include <vector>

namespace embrix {

using ByteVector = std::vector<std::uint8_t>;

template <typename Number>
void put(ByteVector& bytes, std::size_t offset, Number number) {
  std::memcpy(bytes.data() + offset, &number, sizeof number);
}

inline void putText(ByteVector& bytes, std::size_t offset, std::string_view text) {
  std::memcpy(bytes.data() + offset, text.data(), text.size());
}

inline ByteVector bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

// The same bytes at every run.
inline ByteVector randomBytes(std::size_t size, std::uint32_t seed) {
  std::mt19937 generator(seed);
  ByteVector bytes(size);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator());
  return bytes;
}

}  // namespace embrix
