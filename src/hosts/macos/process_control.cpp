#include "hosts/macos/process_control.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/sysctl.h>

#include <cerrno>
#include <cstddef>

namespace embrix {

namespace {

static_assert(PRIO_DARWIN_PROCESS == 4 && PRIO_DARWIN_BG == 0x1000);

constexpr int kOutOfBackground = 0;

bool isThere(const ProcessIdentity& process) {
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, process.pid};
  struct kinfo_proc found {};
  std::size_t size = sizeof found;
  return process.pid > 0 && ::sysctl(name, 4, &found, &size, nullptr, 0) == 0 &&
         size == sizeof found && found.kp_proc.p_pid == process.pid &&
         found.kp_proc.p_starttime.tv_sec == process.startTime;
}

int setBand(const ProcessIdentity& process, int band) {
  const int result = ::setpriority(PRIO_DARWIN_PROCESS, static_cast<id_t>(process.pid), band);
  return result == 0 ? 0 : errno;
}

}  // namespace

int MacProcessControl::calm(const ProcessIdentity& process) {
  return isThere(process) ? setBand(process, PRIO_DARWIN_BG) : ESRCH;
}

int MacProcessControl::restore(const ProcessIdentity& process) {
  return isThere(process) ? setBand(process, kOutOfBackground) : ESRCH;
}

int MacProcessControl::terminate(const ProcessIdentity& process) {
  if (!isThere(process)) return ESRCH;
  return ::kill(process.pid, SIGTERM) == 0 ? 0 : errno;
}

}  // namespace embrix
