// What a cleanup would find, as lines of text for a person and for scripts.
#pragma once

#include <string>
#include <vector>

#include "cleanup/cleanup_spot.h"

namespace embrix {

// A head line for each spot that has items, then a line for each item; `now` in seconds since 1970.
// Empty without items. Names of files stand there escaped, so that one item is always one line.
std::string reportCleanup(const std::vector<CleanupSpot>& spots, double now);

}  // namespace embrix
