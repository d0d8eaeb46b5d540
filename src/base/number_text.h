// Reading numbers out of text that a person or a settings file holds, with a "." as decimal point
// whatever the locale. Writing numbers is fmt's work.
#pragma once

#include <optional>
#include <string_view>

namespace embrix {

// The whole text as one number: decimal or hexadecimal, with or without sign and exponent, "inf"
// and "nan" in any case. Absent for anything else: blanks on either side, a rest behind the number,
// the empty text. A number too large for a double is infinite.
std::optional<double> wholeDouble(std::string_view text);

// The decimal number at the start of the text behind leading blanks, whatever follows it; 0 when
// there is none. "inf", "nan" and hexadecimal digits are no numbers here.
double leadingDouble(std::string_view text);

}  // namespace embrix
