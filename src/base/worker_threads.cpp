#include "base/worker_threads.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace embrix {

WorkerThreads::WorkerThreads(std::size_t most, std::function<void()> begin)
    : most_(std::max<std::size_t>(most, 1)), begin_(std::move(begin)) {}

WorkerThreads::~WorkerThreads() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void WorkerThreads::add(std::function<void()> work) {
  bool allAreBusy = false;
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
    allAreBusy = idle_ < waiting_.size();
  }
  if (allAreBusy && threads_.size() < most_) startThread();
  if (threads_.empty()) {
    doWaiting();
  } else {
    changed_.notify_one();
  }
}

void WorkerThreads::startThread() {
  try {
    threads_.emplace_back([this] { takeWork(); });
  } catch (const std::system_error&) {
    // The system has no thread to give. The work waits for those that run.
  }
}

// There is no other thread.
void WorkerThreads::doWaiting() {
  while (!waiting_.empty()) {
    const std::function<void()> work = std::move(waiting_.front());
    waiting_.pop_front();
    work();
  }
}

void WorkerThreads::takeWork() {
  begin_();
  std::unique_lock lock(mutex_);
  while (true) {
    ++idle_;
    changed_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
    --idle_;
    if (isEnding_) return;
    std::function<void()> work = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    work();
    work = nullptr;
    lock.lock();
  }
}

}  // namespace embrix
