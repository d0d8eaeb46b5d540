// A value that is made when it is first asked for, by whichever thread asks, and then stays. Any
// thread; whoever asks while it is being made waits for it.
#pragma once

#include <atomic>
#include <mutex>
#include <optional>

namespace embrix {

// Not with std::call_once: a maker that throws leaves some implementations of it waiting for ever,
// that of ThreadSanitizer among them.
template <typename Value>
class MadeOnce {
 public:
  // Later calls return what the first `make` returned. One that throws made nothing.
  template <typename Make>
  const Value& get(Make make) const {
    if (!isMade_.load(std::memory_order_acquire)) {
      const std::lock_guard lock(making_);
      if (!value_) value_.emplace(make());
      isMade_.store(true, std::memory_order_release);
    }
    return *value_;
  }

 private:
  mutable std::atomic<bool> isMade_ = false;
  mutable std::mutex making_;
  mutable std::optional<Value> value_;
};

}  // namespace embrix
