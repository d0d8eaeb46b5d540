#include "fakes/manual_scheduler.h"

#include <algorithm>
#include <utility>

namespace embrix {

void ManualScheduler::advance(double seconds) {
  const double end = up + seconds;
  const auto moveTo = [this](double moment) {
    wall += moment - up;
    up = moment;
  };
  while (!timers_.empty()) {
    const auto next =
        std::min_element(timers_.begin(), timers_.end(),
                         [](const Timer& a, const Timer& b) { return a.due < b.due; });
    if (next->due > end) break;
    moveTo(std::max(next->due, up));
    const auto callback = std::move(next->callback);
    timers_.erase(next);
    callback();
  }
  moveTo(end);
}

bool ManualScheduler::advanceToNext() {
  if (timers_.empty()) return false;
  double due = timers_.front().due;
  for (const Timer& timer : timers_) due = std::min(due, timer.due);
  advance(std::max(due - up, 0.0));
  return true;
}

bool ManualScheduler::doWork() {
  const auto next = std::find_if(work_.begin(), work_.end(),
                                 [&](const Work& waiting) { return waiting.priority != standing; });
  if (next == work_.end()) return false;
  Work work = std::move(*next);
  work_.erase(next);
  work.work();
  done_.push_back(std::move(work.then));
  return true;
}

void ManualScheduler::finishWork() {
  while (!done_.empty()) {
    const auto then = std::move(done_.front());
    done_.pop_front();
    then();
  }
}

void ManualScheduler::runBackground() {
  finishWork();
  while (doWork()) finishWork();
}

void ManualScheduler::runAfter(double seconds, std::function<void()> callback) {
  timers_.push_back({.due = up + std::max(seconds, 0.0), .callback = std::move(callback)});
}

void ManualScheduler::runInBackground(WorkPriority priority, std::function<void()> work,
                                      std::function<void()> then) {
  priorities.push_back(priority);
  work_.push_back({.priority = priority, .work = std::move(work), .then = std::move(then)});
}

}  // namespace embrix
