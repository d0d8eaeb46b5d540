// A property list, XML or binary, from the bytes of its file. Any thread.
#pragma once

#include <optional>
#include <string_view>

#include "host/property.h"

namespace embrix {

// Absent for bytes that are no property list, and for one past the bounds of
// darwin/property_list_limits.h. Texts and keys come as the bytes they are. A kind of value that
// Property does not know (data, references of archives, null) stands there as a Property without a
// value. Of keys that stand twice in a dictionary, either may be kept.
std::optional<Property> decodePropertyList(std::string_view bytes);

}  // namespace embrix
