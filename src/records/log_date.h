// The date that begins a row of the power log: "2026-03-02 03:14:05 +0100". Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace embrix {

inline constexpr std::size_t kLogDateLength = 25;  // bytes, all ASCII

// The date in the first 25 bytes of `text`, seconds since 1970; absent in any other form. The
// platform's own date reader is lenient about the number of digits and the kind of blank; the log
// always has this form, and what has another comes from elsewhere. A date that no calendar has (a
// 31st of April, an hour of 24, a leap second) is refused as there.
std::optional<double> logDateAtStart(std::string_view text);

}  // namespace embrix
