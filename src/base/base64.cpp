#include "base/base64.h"

#include <array>
#include <cstdint>

namespace embrix {

namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  while (!bytes.empty()) {
    const std::string_view group = bytes.substr(0, 3);
    bytes.remove_prefix(group.size());
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (i < group.size() ? static_cast<std::uint8_t>(group[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= group.size() ? kAlphabet[bits >> (18 - 6 * i) & 63] : '=';
    }
  }
  return text;
}

std::optional<std::string> bytesOfBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') ++padding;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPadding = i >= text.size() - padding;
    const std::size_t value = isPadding ? 0 : kAlphabet.find(text[i]);
    if (value == std::string_view::npos) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    if (i % 4 != 3) continue;
    for (int shift = 16; shift >= 0; shift -= 8) bytes += static_cast<char>(bits >> shift & 0xFF);
    bits = 0;
  }
  for (std::size_t i = 0; i < padding; ++i) {
    if (bytes.back() != '\0') return std::nullopt;
    bytes.pop_back();
  }
  return bytes;
}

}  // namespace embrix
