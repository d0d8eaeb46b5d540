#include "hosts/linux/event_scheduler.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdint>

#include "hosts/linux/clock.h"
#include "hosts/linux/io_priority.h"
#include "hosts/linux/loop_failure.h"

namespace embrix {

namespace {

// What nobody waits for gives way to everything else.
constexpr int kUtilityNice = 10;

// How much later than asked a timer may come, so that those of nearly one moment come in one
// wakeup. A tenth of a percent of the shortest pause between two ticks.
constexpr std::uint64_t kAccuracy = 1000;  // microseconds

// In Linux both belong to a thread, not to the whole process.
void beginThread(WorkPriority priority) {
  if (priority != WorkPriority::utility) return;
  const auto thread = static_cast<id_t>(::syscall(SYS_gettid));
  ::setpriority(PRIO_PROCESS, thread, kUtilityNice);
  setIoPriority(0, kIdleIoPriority);
}

int timeCame(sd_event_source*, std::uint64_t, void* scheduler) {
  static_cast<LiveScheduler*>(scheduler)->turn();
  return 0;
}

int wasWoken(sd_event_source*, int descriptor, std::uint32_t, void* scheduler) {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t taken = ::read(descriptor, &count, sizeof count);
  static_cast<LiveScheduler*>(scheduler)->turn();
  return 0;
}

}  // namespace

void EventScheduler::DropSource::operator()(sd_event_source* source) const {
  sd_event_source_disable_unref(source);
}

EventScheduler::EventScheduler(sd_event* event)
    : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), scheduler_(clockwork()) {
  if (!wake_.isOpen()) requireForLoop(-errno);
  sd_event_source* source = nullptr;
  requireForLoop(
      sd_event_add_time(event, &source, CLOCK_BOOTTIME, 0, kAccuracy, timeCame, &scheduler_));
  timer_.reset(source);
  sd_event_source_set_enabled(source, SD_EVENT_OFF);
  source = nullptr;
  requireForLoop(sd_event_add_io(event, &source, wake_.number(), EPOLLIN, wasWoken, &scheduler_));
  wakeSource_.reset(source);
}

EventScheduler::~EventScheduler() = default;

Clockwork EventScheduler::clockwork() {
  return {.wallTime = [] { return LinuxClock().wallTime(); },
          .uptime = [] { return LinuxClock().uptime(); },
          .wakeAt = [this](std::optional<double> uptime) { wakeAt(uptime); },
          .wakeNow =
              [this] {
                const std::uint64_t one = 1;
                // It fails only while the count is near its end, and then the descriptor is
                // readable anyway.
                [[maybe_unused]] const ssize_t written = ::write(wake_.number(), &one, sizeof one);
              },
          .beginThread = beginThread};
}

void EventScheduler::wakeAt(std::optional<double> uptime) {
  if (!uptime) {
    sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF);
    return;
  }
  sd_event_source_set_time(timer_.get(), static_cast<std::uint64_t>(std::ceil(*uptime * 1e6)));
  sd_event_source_set_enabled(timer_.get(), SD_EVENT_ONESHOT);
}

}  // namespace embrix
