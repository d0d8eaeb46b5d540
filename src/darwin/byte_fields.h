// Fields of fixed place in records of the kernel, in the byte order of the machine that wrote them.
// No swapping: a record never leaves the machine whose kernel made it.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace embrix {

using Bytes = std::span<const std::uint8_t>;

// The number at that offset. The record must reach that far: callers compare its size first.
template <typename Number>
Number fieldAt(Bytes record, std::size_t offset) {
  static_assert(std::is_arithmetic_v<Number>);
  assert(offset + sizeof(Number) <= record.size());
  Number number{};
  std::memcpy(&number, record.data() + offset, sizeof number);
  return number;
}

// The bytes from the offset up to the first NUL, at most `capacity` of them: the kernel fills such
// fields to the brim without a NUL when a text just fits.
inline std::string_view textFieldAt(Bytes record, std::size_t offset, std::size_t capacity) {
  assert(offset + capacity <= record.size());
  const Bytes field = record.subspan(offset, capacity);
  const auto end = std::find(field.begin(), field.end(), std::uint8_t{0});
  return {reinterpret_cast<const char*>(field.data()),
          static_cast<std::size_t>(end - field.begin())};
}

}  // namespace embrix
