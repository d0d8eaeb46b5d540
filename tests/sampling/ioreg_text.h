// Reads what `ioreg` prints into the property lists that registries hand out.
#pragma once

#include <string_view>

#include "host/property.h"

namespace embrix {

// One printed value such as `{"Voltage"=12000,"CellWom"=(0,0)}`. Yes and No are Booleans, numbers
// above the signed range keep their bits, bytes (`<0e20>`) and a value that is not there
// (`"AdapterPower"=,`) become an empty property. Throws on anything else: an input of these tests
// that cannot be read is a mistake in the test.
Property ioregValue(std::string_view text);

// The keys of every `"Key" = value` line; other lines are passed over. A key that stands deeper,
// inside a value, is not among them.
PropertyMap ioregProperties(std::string_view text);

}  // namespace embrix
