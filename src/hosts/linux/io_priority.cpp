#include "hosts/linux/io_priority.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace embrix {

namespace {

constexpr int kOneThread = 1;  // IOPRIO_WHO_PROCESS, which means a thread
constexpr int kClassShift = 13;
constexpr int kNoClass = 0;
constexpr int kRealTimeClass = 1;

int set(std::int32_t thread, IoPriority priority) {
  return ::syscall(SYS_ioprio_set, kOneThread, thread, priority) == 0 ? 0 : errno;
}

}  // namespace

bool isRealTime(IoPriority priority) {
  return priority >> kClassShift == kRealTimeClass;
}

std::optional<IoPriority> ioPriority(std::int32_t thread) {
  const long priority = ::syscall(SYS_ioprio_get, kOneThread, thread);
  if (priority < 0) return std::nullopt;
  return static_cast<IoPriority>(priority);
}

int setIoPriority(std::int32_t thread, IoPriority priority) {
  const int error = set(thread, priority);
  // Older kernels tell a level for a thread without a class, and do not take it back.
  const bool hasClass = priority >> kClassShift != kNoClass;
  return error == EINVAL && !hasClass ? set(thread, 0) : error;
}

}  // namespace embrix
