// The report of --json.
#pragma once

#include <string>

#include "frame/frame.h"

namespace embrix {

// One object on several lines, every line ended by a line break: "apps" (the first 15 groups, each
// with those of its first 5 processes that draw at least 0.01 W), "fansRPM", "processWatts",
// "systemWatts", "temperature" and "thermalState". One empty line when the frame holds a number
// that JSON has no form for.
std::string reportJSON(const Frame& frame);

}  // namespace embrix
