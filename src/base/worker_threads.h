// A bounded number of threads that take up work in the order in which it comes. They are started as
// they are needed and then stay: a thread that waits costs nothing. Used from one thread.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace embrix {

class WorkerThreads {
 public:
  // `begin` is the first thing that each thread does. `most` is at least 1.
  WorkerThreads(std::size_t most, std::function<void()> begin);

  // Waits for the work that runs; what had not begun is dropped.
  ~WorkerThreads();
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;

  // Runs and destroys `work` on one of the threads; on the calling one where the system has not
  // given a single thread: slowly is better than never. It may not throw.
  void add(std::function<void()> work);

 private:
  void startThread();
  void doWaiting();
  void takeWork();

  const std::size_t most_;
  const std::function<void()> begin_;
  std::vector<std::thread> threads_;

  std::mutex mutex_;  // for what follows
  std::condition_variable changed_;
  std::deque<std::function<void()>> waiting_;
  std::size_t idle_ = 0;
  bool isEnding_ = false;
};

}  // namespace embrix
