// From one process table to the next. Most processes are the same from tick to tick but for their
// counters, so a recording tells those apart. Order is kept to the row: sorts downstream are
// stable. Pure; any thread.
#pragma once

#include <optional>
#include <vector>

#include "hosts/replay/recording_format.h"

namespace embrix {

ProcessTableChange processTableChange(const std::vector<RawProcess>& before,
                                      const std::vector<RawProcess>& after);

// Turns the table before the change into the one after it. A problem, and then a table that is not
// to be used, when the change does not follow from that table.
std::optional<RecordingProblem> applyProcessTableChange(const ProcessTableChange& change,
                                                        std::vector<RawProcess>& table);

}  // namespace embrix
