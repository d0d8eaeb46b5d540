#include "hosts/replay/replay_loop.h"

#include <algorithm>

namespace embrix {

namespace {

constexpr double kLongest = 3.2e9;  // seconds, a hundred years

}  // namespace

ReplayedMoment ReplayScheduler::look() {
  const ReplayedMoment moment = moment_();
  if (hasLooked_ && moment.uptime == lastTold_) return moment;
  if (hasLooked_) time_ = std::max(time_, timeAtTold_ + (moment.uptime - lastTold_));
  hasLooked_ = true;
  lastTold_ = moment.uptime;
  timeAtTold_ = time_;
  return moment;
}

// Seconds that have been waited since the recording told its time.
double ReplayScheduler::waited(const ReplayedMoment& moment) const {
  const double waited = time_ - timeAtTold_;
  if (!moment.nextUptime) return waited;
  return std::min(waited, std::max(*moment.nextUptime - moment.uptime, 0.0));
}

double ReplayScheduler::uptime() {
  const ReplayedMoment moment = look();
  return moment.uptime + waited(moment);
}

double ReplayScheduler::wallTime() {
  const ReplayedMoment moment = look();
  return moment.wallTime + waited(moment);
}

void ReplayScheduler::runAfter(double seconds, std::function<void()> callback) {
  look();
  timers_.emplace(time_ + (seconds > 0 ? std::min(seconds, kLongest) : 0), std::move(callback));
}

void ReplayScheduler::runInBackground(WorkPriority, std::function<void()> work,
                                      std::function<void()> then) {
  works_.push_back({std::move(work), std::move(then)});
}

bool ReplayScheduler::doWork() {
  if (works_.empty()) return false;
  Work next = std::move(works_.front());
  works_.pop_front();
  next.work();
  next.work = nullptr;
  next.then();
  return true;
}

bool ReplayScheduler::skipToTimer() {
  if (timers_.empty()) return false;
  look();
  auto timer = timers_.extract(timers_.begin());
  time_ = std::max(time_, timer.key());
  timer.mapped()();
  return true;
}

void ReplayLoop::run() {
  while (!isOver_) {
    if (scheduler_.doWork()) continue;
    if (finished_() || !scheduler_.skipToTimer()) isOver_ = true;
  }
}

}  // namespace embrix
