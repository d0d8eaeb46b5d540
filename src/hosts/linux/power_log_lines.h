#pragma once

#include <string>
#include <vector>

#include "hosts/linux/sleep_journal.h"

namespace embrix {

// The entries, oldest first, as lines of the power log, in UTC. A line says "Sleep", "Wake" or
// "DarkWake" (awake for a moment between suspending and hibernating, with the seconds of it). The
// journal knows neither the charge nor the adapter, nor what ended a sleep: the lines are silent on
// these. Entries that say again what is known are left out, as are those that tell of something
// else.
std::string powerLogLines(const std::vector<JournalEntry>& entries);

}  // namespace embrix
