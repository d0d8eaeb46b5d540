#include "darwin/property_list_limits.h"

#include <cstdint>
#include <optional>

namespace embrix {

namespace {

// A binary property list: "bplist00", the values, a table of their offsets, and this at its end.
namespace trailer {
constexpr std::size_t kSize = 32;
constexpr std::size_t kOffsetSizeAt = 6;     // 1 byte: bytes in an entry of the table
constexpr std::size_t kReferenceSizeAt = 7;  // 1 byte: bytes in a reference to a value
constexpr std::size_t kCountAt = 8;          // 8 bytes: values
constexpr std::size_t kRootAt = 16;          // 8 bytes: which of them is the root
constexpr std::size_t kTableAt = 24;         // 8 bytes: where the table lies
}  // namespace trailer

constexpr std::size_t kHeaderSize = 8;

// Kinds of value, in the upper half of the byte that begins each. The lower half is a size.
constexpr std::uint64_t kNumber = 0x1;
constexpr std::uint64_t kData = 0x4;
constexpr std::uint64_t kText = 0x5;      // a byte for each character
constexpr std::uint64_t kWideText = 0x6;  // UTF-16
constexpr std::uint64_t kArray = 0xa;
constexpr std::uint64_t kSet = 0xc;
constexpr std::uint64_t kDictionary = 0xd;

// Walks a binary list the way that the library will, every reference anew, and stops at the first
// sign of trouble.
class BinaryWalk {
 public:
  explicit BinaryWalk(std::string_view bytes) : bytes_(bytes) {}

  bool isTame() {
    if (bytes_.size() < kHeaderSize + trailer::kSize) return false;
    const std::size_t start = bytes_.size() - trailer::kSize;
    offsetSize_ = byteAt(start + trailer::kOffsetSizeAt);
    referenceSize_ = byteAt(start + trailer::kReferenceSizeAt);
    const auto count = number(start + trailer::kCountAt, 8);
    const auto root = number(start + trailer::kRootAt, 8);
    const auto table = number(start + trailer::kTableAt, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) {
      return false;
    }
    if (!count || !root || !table || *table > start) return false;
    if (*count > (start - *table) / offsetSize_) return false;
    count_ = *count;
    table_ = *table;
    return value(*root, 0);
  }

 private:
  std::size_t byteAt(std::size_t at) const { return static_cast<std::uint8_t>(bytes_[at]); }

  // Big-endian. Absent when it does not lie within the bytes.
  std::optional<std::uint64_t> number(std::uint64_t at, std::size_t size) const {
    if (at > bytes_.size() || size > bytes_.size() - at) return std::nullopt;
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < size; ++i) result = result << 8 | byteAt(at + i);
    return result;
  }

  bool value(std::uint64_t index, int depth) {
    if (index >= count_ || depth > kPropertyListDepthLimit || !weigh(1)) return false;
    const auto at = number(table_ + index * offsetSize_, offsetSize_);
    const auto marker = at ? number(*at, 1) : std::nullopt;
    if (!marker) return false;
    std::uint64_t contents = *at + 1;
    std::uint64_t size = *marker & 0xf;
    switch (*marker >> 4) {
      case kData:
      case kText:
      case kWideText:
        return longSize(size, contents) && weigh(size);
      case kArray:
      case kSet:
        return longSize(size, contents) && references(contents, size, depth);
      case kDictionary:  // its keys, then its values
        return longSize(size, contents) && size <= bytes_.size() && keys(contents, size) &&
               references(contents, 2 * size, depth);
      default:
        return true;
    }
  }

  // A size of 15 says that the size itself follows, as a number with a marker of its own.
  bool longSize(std::uint64_t& size, std::uint64_t& contents) const {
    if (size != 0xf) return true;
    const auto marker = number(contents, 1);
    if (!marker || *marker >> 4 != kNumber || (*marker & 0xf) > 3) return false;
    const std::size_t width = std::size_t{1} << (*marker & 0xf);
    const auto read = number(contents + 1, width);
    if (!read) return false;
    size = *read;
    contents += 1 + width;
    return true;
  }

  bool references(std::uint64_t at, std::uint64_t count, int depth) {
    if (count > bytes_.size()) return false;
    for (std::uint64_t i = 0; i < count; ++i) {
      const auto index = number(at + i * referenceSize_, referenceSize_);
      if (!index || !value(*index, depth + 1)) return false;
    }
    return true;
  }

  // The library ends the process over a key with a NUL in it.
  bool keys(std::uint64_t at, std::uint64_t count) const {
    for (std::uint64_t i = 0; i < count; ++i) {
      const auto index = number(at + i * referenceSize_, referenceSize_);
      if (!index || *index >= count_ || !isTextWithoutNul(*index)) return false;
    }
    return true;
  }

  bool isTextWithoutNul(std::uint64_t index) const {
    const auto at = number(table_ + index * offsetSize_, offsetSize_);
    const auto marker = at ? number(*at, 1) : std::nullopt;
    if (!marker || (*marker >> 4 != kText && *marker >> 4 != kWideText)) return false;
    const std::size_t unit = *marker >> 4 == kText ? 1 : 2;
    std::uint64_t contents = *at + 1;
    std::uint64_t size = *marker & 0xf;
    if (!longSize(size, contents) || size > bytes_.size()) return false;
    for (std::uint64_t i = 0; i < size; ++i) {
      if (number(contents + i * unit, unit).value_or(0) == 0) return false;
    }
    return true;
  }

  bool weigh(std::uint64_t more) {
    if (more > kPropertyListWeightLimit - weight_) return false;
    weight_ += static_cast<std::size_t>(more);
    return true;
  }

  std::string_view bytes_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t table_ = 0;
  std::size_t weight_ = 0;
};

std::size_t occurrences(std::string_view text, std::string_view wanted) {
  std::size_t count = 0;
  for (auto at = text.find(wanted); at != text.npos; at = text.find(wanted, at + wanted.size())) {
    ++count;
  }
  return count;
}

}  // namespace

bool isTameBinaryPropertyList(std::string_view bytes) {
  return bytes.size() <= kPropertyListSizeLimit && BinaryWalk(bytes).isTame();
}

bool isTameXmlPropertyList(std::string_view bytes) {
  return bytes.size() <= kPropertyListSizeLimit &&
         occurrences(bytes, "<dict") + occurrences(bytes, "<array") <= kPropertyListCollectionLimit;
}

}  // namespace embrix
