// The I/O priority of a thread (ioprio_set(2)), for which the C library has no call.
#pragma once

#include <cstdint>
#include <optional>

namespace embrix {

// A class in the upper bits and a level in the lower thirteen, as the kernel writes it.
using IoPriority = int;

// Served when nobody else wants the disk. Anybody may put a thread of his own there and take it out
// again.
inline constexpr IoPriority kIdleIoPriority = 3 << 13;

// Whether the thread is of the real-time class, which only the superuser can give.
bool isRealTime(IoPriority priority);

// `thread` is a thread's id, 0 for the calling one. Absent when there is no such thread or the
// kernel does not tell.
std::optional<IoPriority> ioPriority(std::int32_t thread);

// 0, or the errno.
int setIoPriority(std::int32_t thread, IoPriority priority);

}  // namespace embrix
