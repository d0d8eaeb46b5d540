// One element of the kernel's reports, as the raw data behind a channel holds it. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "darwin/byte_fields.h"

namespace embrix {

// Places within the packed `IOReportElement`.
namespace report_element_layout {
inline constexpr std::size_t kSize = 64;
inline constexpr std::size_t kTimestampOffset = 24;  // unsigned 64-bit, machine time units
inline constexpr std::size_t kValueOffset = 32;      // values, as a simple report: signed 64-bit
}  // namespace report_element_layout

// When the reporter last wrote the element, in machine time units. Absent when the bytes are no
// whole element, and when it was never written.
std::optional<std::uint64_t> reportTimestamp(Bytes element);

}  // namespace embrix
