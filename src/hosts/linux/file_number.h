#pragma once

#include <cstdint>

#include "base/hash_map.h"

namespace embrix {

// What tells two files of one moment apart, however many names each has.
struct FileNumber {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;

  bool operator==(const FileNumber&) const = default;
};

template <>
struct HashOf<FileNumber> {
  std::size_t operator()(const FileNumber& file) const noexcept {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // 2^64 over the golden ratio
    return static_cast<std::size_t>((file.inode ^ file.device << 40) * kSpread);
  }
};

}  // namespace embrix
