// How the threads of one measurement divide the tree among them: who has more folders than he can
// go through at once hands one to a thread that has none. There are never more folders here than
// threads waiting, so what is open at one time stays bounded.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

#include "base/descriptor.h"

namespace embrix {

class SharedFolders {
 public:
  // One more thread will call take(). Called by a thread that has work, itself the first.
  void addThread();
  // It will not after all.
  void removeThread();

  // Whether offer() has a chance. Cheap enough to be asked for every folder.
  bool isWanted() const { return wanted_.load(std::memory_order_relaxed) > 0; }

  // Takes the folder if somebody waits for one; else it stays with the caller.
  bool offer(Descriptor& folder);

  // Waits for a folder. Absent when every thread waits, which is the end for all of them.
  std::optional<Descriptor> take();

 private:
  void countWanted() { wanted_.store(idle_ - folders_.size(), std::memory_order_relaxed); }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Descriptor> folders_;
  std::size_t threads_ = 0;
  std::size_t idle_ = 0;                 // threads in take()
  std::atomic<std::size_t> wanted_ = 0;  // folders that would find a taker
  bool ended_ = false;
};

}  // namespace embrix
