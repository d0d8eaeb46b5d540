// Bytes as text in the alphabet of RFC 4648, with padding and without line breaks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embrix {

std::string base64(std::string_view bytes);

// Absent when the text is not what base64() writes for some bytes: a foreign character, a length
// that is no multiple of four, or bits that stand for nothing.
std::optional<std::string> bytesOfBase64(std::string_view text);

}  // namespace embrix
