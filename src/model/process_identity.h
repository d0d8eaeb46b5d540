#pragma once

#include <optional>

#include "frame/process_row.h"
#include "host/process_control.h"

namespace embrix {

// The process that a row stands for, to act on that one and on no later one of the same pid. Absent
// when the row's id does not tell the start time.
std::optional<ProcessIdentity> identityOf(const ProcessRow& row);

}  // namespace embrix
