// Whether a property list is tame enough to be handed to the parsing library, which recurses into
// nested collections and unfolds shared ones without a bound of its own. Hostile bytes could make
// it run out of stack (deep nesting, cycles) or of memory (a few hundred bytes that unfold into
// gigabytes). Not a check that the list is well formed: that is the library's work. Any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace embrix {

// The lists read here (of simulators, of build folders) are a few kilobytes and three levels deep.
inline constexpr std::size_t kPropertyListSizeLimit = std::size_t{4} << 20;  // bytes
inline constexpr int kPropertyListDepthLimit = 64;                           // of a binary list
inline constexpr std::size_t kPropertyListCollectionLimit = 1000;            // of an XML list
// Values of a binary list after shared ones are counted at each place where they stand, plus the
// bytes of its texts and data.
inline constexpr std::size_t kPropertyListWeightLimit = std::size_t{8} << 20;

// `bytes` starts with "bplist00". False too where its own directory of values points outside.
bool isTameBinaryPropertyList(std::string_view bytes);

// Counts what opens and never what closes: an end tag can hide in comments, attributes and quotes,
// and whoever tells those apart is a parser already.
bool isTameXmlPropertyList(std::string_view bytes);

}  // namespace embrix
