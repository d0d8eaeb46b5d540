// What --watch prints of a frame.
#pragma once

#include <string>
#include <vector>

#include "model/power_model.h"

namespace embrix {

// One JSON object on one line, with a line break at its end: "alerts" (identifiers of what was
// sent with this frame), "calmed" (pids), "loadLevel", "runaways" (group keys, ascending), "time"
// (seconds since 1970), "totalWatts" and "verdict" (the sentence). Numbers and texts have the form
// that they have in the report of --json. Of a model that has a frame.
std::string watchLine(const PowerModel& model, const std::vector<std::string>& alerts);

}  // namespace embrix
