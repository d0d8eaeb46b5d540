#include "hosts/linux/run_clock.h"

#include <time.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace embrix {

namespace {

// The clock's number as clock_getcpuclockid(3) makes it, which would look the process up as well.
// The number is part of the kernel's binary interface: the pid's complement above three bits that
// say "of a process, by the scheduler's count".
clockid_t runClockOf(std::int32_t pid) {
  constexpr unsigned kSchedulerClock = 2;
  return static_cast<clockid_t>((~static_cast<unsigned>(pid) << 3) | kSchedulerClock);
}

}  // namespace

std::optional<std::uint64_t> runTimeNS(std::int32_t pid) {
  // The most that Linux ever gives (PID_MAX_LIMIT). Beyond, and below 1, the number would be that
  // of another clock.
  constexpr std::int32_t kMostPID = 4 * 1024 * 1024;
  timespec ran{};
  if (pid <= 0 || pid > kMostPID || ::clock_gettime(runClockOf(pid), &ran) != 0)
    return std::nullopt;
  return static_cast<std::uint64_t>(ran.tv_sec) * 1'000'000'000 +
         static_cast<std::uint64_t>(ran.tv_nsec);
}

bool tellsOwnPids(const std::string& procRoot) {
  std::error_code error;
  const auto self = std::filesystem::read_symlink(procRoot + "/self", error);
  return !error && self == std::to_string(::getpid()) && runTimeNS(::getpid());
}

}  // namespace embrix
