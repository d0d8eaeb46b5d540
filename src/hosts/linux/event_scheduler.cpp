#include "hosts/linux/event_scheduler.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "hosts/linux/clock.h"
#include "hosts/linux/io_priority.h"

namespace embrix {

namespace {

// Of each priority. One is enough for the sampler, others are for programs that are waited for.
constexpr std::size_t kMostThreads = 4;

// What nobody waits for gives way to everything else.
constexpr int kUtilityNice = 10;

// How much later than asked a timer may come, so that those of nearly one moment come in one
// wakeup. A tenth of a percent of the shortest pause between two ticks.
constexpr std::uint64_t kAccuracy = 1000;  // microseconds

constexpr double kLongest = 3.2e9;  // seconds, a hundred years

std::uint64_t microsecondsSinceBoot() {
  timespec time{};
  ::clock_gettime(CLOCK_BOOTTIME, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000 +
         static_cast<std::uint64_t>(time.tv_nsec) / 1000;
}

// In Linux both belong to a thread, not to the whole process.
void beginUtilityThread() {
  const auto thread = static_cast<id_t>(::syscall(SYS_gettid));
  ::setpriority(PRIO_PROCESS, thread, kUtilityNice);
  setIoPriority(0, kIdleIoPriority);
}

}  // namespace

struct EventScheduler::Work {
  Callback work;
  Callback then;
};

void EventScheduler::DropSource::operator()(sd_event_source* source) const {
  sd_event_source_disable_unref(source);
}

EventScheduler::EventScheduler(sd_event* event)
    : event_(event),
      doneSignal_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      utility_(kMostThreads, beginUtilityThread),
      userInitiated_(kMostThreads, [] {}) {
  sd_event_source* source = nullptr;
  if (sd_event_add_time(event_, &source, CLOCK_BOOTTIME, 0, kAccuracy, timeCame, this) >= 0) {
    timer_.reset(source);
    sd_event_source_set_enabled(source, SD_EVENT_OFF);
  }
  source = nullptr;
  if (sd_event_add_io(event_, &source, doneSignal_.number(), EPOLLIN, workIsDone, this) >= 0) {
    doneSource_.reset(source);
  }
}

EventScheduler::~EventScheduler() = default;

double EventScheduler::wallTime() {
  return LinuxClock().wallTime();
}

double EventScheduler::uptime() {
  return LinuxClock().uptime();
}

void EventScheduler::runAfter(double seconds, Callback callback) {
  const double wait = seconds > 0 ? std::ceil(std::min(seconds, kLongest) * 1e6) : 0;
  timers_.emplace(microsecondsSinceBoot() + static_cast<std::uint64_t>(wait), std::move(callback));
  armTimer();
}

void EventScheduler::armTimer() {
  if (timers_.empty()) {
    sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF);
    return;
  }
  sd_event_source_set_time(timer_.get(), timers_.begin()->first);
  sd_event_source_set_enabled(timer_.get(), SD_EVENT_ONESHOT);
}

int EventScheduler::timeCame(sd_event_source*, std::uint64_t, void* self) {
  static_cast<EventScheduler*>(self)->callDueTimers();
  return 0;
}

void EventScheduler::callDueTimers() {
  // What these ask for comes in a later round, so that a callback that asks for itself again at
  // once cannot keep all else from its turn.
  std::vector<Callback> due;
  const auto end = timers_.upper_bound(microsecondsSinceBoot());
  for (auto timer = timers_.begin(); timer != end; ++timer) due.push_back(std::move(timer->second));
  timers_.erase(timers_.begin(), end);
  for (Callback& callback : due) {
    callback();
    callback = nullptr;
  }
  armTimer();
}

void EventScheduler::runInBackground(WorkPriority priority, Callback work, Callback then) {
  WorkerThreads& threads = priority == WorkPriority::utility ? utility_ : userInitiated_;
  // In one piece: `then` may not be destroyed by the thread that runs the work.
  auto both = std::make_shared<Work>(Work{std::move(work), std::move(then)});
  threads.add([this, both = std::move(both)] {
    both->work();
    both->work = nullptr;
    finish(std::move(both->then));
  });
}

// On the thread of the work.
void EventScheduler::finish(Callback then) {
  {
    const std::lock_guard lock(mutex_);
    done_.push_back(std::move(then));
  }
  const std::uint64_t one = 1;
  // It fails only while the count is near its end, and then the descriptor is readable anyway.
  [[maybe_unused]] const ssize_t written = ::write(doneSignal_.number(), &one, sizeof one);
}

int EventScheduler::workIsDone(sd_event_source*, int descriptor, std::uint32_t, void* self) {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t taken = ::read(descriptor, &count, sizeof count);
  static_cast<EventScheduler*>(self)->callForDoneWork();
  return 0;
}

void EventScheduler::callForDoneWork() {
  std::vector<Callback> done;
  {
    const std::lock_guard lock(mutex_);
    done.swap(done_);
  }
  for (Callback& then : done) {
    then();
    then = nullptr;
  }
}

}  // namespace embrix
