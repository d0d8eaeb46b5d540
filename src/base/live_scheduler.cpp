#include "base/live_scheduler.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace embrix {

namespace {

// Of each priority. One is enough for the sampler, others are for programs that are waited for.
constexpr std::size_t kMostThreads = 4;

constexpr double kLongest = 3.2e9;  // seconds, a hundred years

}  // namespace

struct LiveScheduler::Work {
  Callback work;
  Callback then;
};

LiveScheduler::LiveScheduler(Clockwork clockwork)
    : clockwork_(std::move(clockwork)),
      utility_(kMostThreads, [this] { clockwork_.beginThread(WorkPriority::utility); }),
      userInitiated_(kMostThreads,
                     [this] { clockwork_.beginThread(WorkPriority::userInitiated); }) {}

void LiveScheduler::turn() {
  callDueTimers();
  callForDoneWork();
}

void LiveScheduler::runAfter(double seconds, Callback callback) {
  const double wait = seconds > 0 ? std::min(seconds, kLongest) : 0;
  const auto timer = timers_.emplace(uptime() + wait, std::move(callback));
  if (timer == timers_.begin()) wakeForNextTimer();
}

void LiveScheduler::wakeForNextTimer() {
  clockwork_.wakeAt(timers_.empty() ? std::nullopt : std::optional(timers_.begin()->first));
}

void LiveScheduler::callDueTimers() {
  if (timers_.empty()) return;
  // What these ask for comes in a later turn, so that a callback that asks for itself again at once
  // cannot keep all else from its turn.
  std::vector<Callback> due;
  const auto end = timers_.upper_bound(uptime());
  for (auto timer = timers_.begin(); timer != end; ++timer) due.push_back(std::move(timer->second));
  if (due.empty()) return;
  timers_.erase(timers_.begin(), end);
  for (Callback& callback : due) {
    callback();
    callback = nullptr;
  }
  wakeForNextTimer();
}

void LiveScheduler::runInBackground(WorkPriority priority, Callback work, Callback then) {
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
void LiveScheduler::finish(Callback then) {
  {
    const std::lock_guard lock(mutex_);
    done_.push_back(std::move(then));
  }
  clockwork_.wakeNow();
}

void LiveScheduler::callForDoneWork() {
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
