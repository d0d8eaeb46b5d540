#pragma once

#include <compare>
#include <string_view>

namespace embrix {

// The order of versions, in which "17.10" is above "17.9": runs of digits compare as numbers of any
// length, everything else byte by byte, and a version is above one that it only goes on from.
std::strong_ordering compareVersions(std::string_view a, std::string_view b);

}  // namespace embrix
