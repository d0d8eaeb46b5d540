// Core Foundation's values as the program's own. Nothing is taken over or handed over.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <optional>
#include <string>

#include "host/property.h"

namespace embrix {

// A Property without a value for null and for kinds that Property does not know. Keys that are no
// texts are left out. Whole numbers keep their 64 bits. Collections nested deeper than 64 are cut.
Property propertyOf(CFTypeRef object);

// Empty when it is no dictionary.
PropertyMap propertyMapOf(CFTypeRef object);

// UTF-8. Absent when it is no text. Half a surrogate pair becomes a question mark.
std::optional<std::string> textOf(CFTypeRef object);

// Absent when it is no number.
std::optional<std::int64_t> integerOf(CFTypeRef object);

}  // namespace embrix
