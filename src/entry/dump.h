// The headless run: one sample of a machine, told as a report.
#pragma once

#include <string>
#include <vector>

#include "host/host.h"

namespace embrix {

// What a run with --dump or --json prints; --json wins over --dump, and --cleanup over both, with a
// report that is text either way. Takes a baseline, lets 2 seconds of the host's clock go by, and
// reports the sample after them. Empty when there is nothing to print. Needs no main thread and
// reads no settings.
std::string dump(Host& host, const std::vector<std::string>& arguments);

}  // namespace embrix
