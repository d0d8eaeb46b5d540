#include "hosts/linux/shared_folders.h"

namespace embrix {

void SharedFolders::addThread() {
  const std::lock_guard lock(mutex_);
  threads_ += 1;
}

void SharedFolders::removeThread() {
  const std::lock_guard lock(mutex_);
  threads_ -= 1;
}

bool SharedFolders::offer(Descriptor& folder) {
  const std::lock_guard lock(mutex_);
  if (folders_.size() >= idle_) return false;
  folders_.push_back(std::move(folder));
  countWanted();
  changed_.notify_one();
  return true;
}

std::optional<Descriptor> SharedFolders::take() {
  std::unique_lock lock(mutex_);
  idle_ += 1;
  countWanted();
  if (idle_ == threads_ && folders_.empty()) {
    ended_ = true;
    changed_.notify_all();
  }
  changed_.wait(lock, [this] { return ended_ || !folders_.empty(); });
  if (folders_.empty()) return std::nullopt;
  Descriptor folder = std::move(folders_.front());
  folders_.pop_front();
  idle_ -= 1;
  countWanted();
  return folder;
}

}  // namespace embrix
