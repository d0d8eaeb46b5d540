// When the machine started, for the times at which processes started. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace embrix {

// Seconds since 1970; 0 when the proc file system at that path does not tell. The kernel reckons
// it back from the wall clock, so it moves when that is set: the machine's own is read once, and
// the same start time names a process for as long as this program runs.
std::uint64_t bootTime(const std::string& procRoot);

// Whole seconds since 1970 at which a process started that counts so many clock ticks since boot.
std::uint64_t startTimeOf(std::uint64_t bootTime, std::uint64_t startTicks);

}  // namespace embrix
