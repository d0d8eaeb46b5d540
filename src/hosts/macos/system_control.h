// Named values of the kernel.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace embrix {

// The bytes up to the first NUL. Absent when there is no such name or it holds nothing.
std::optional<std::string> systemText(const char* name);

// Absent when there is no such name or it holds no number of that size.
std::optional<std::int32_t> systemNumber(const char* name);

}  // namespace embrix
