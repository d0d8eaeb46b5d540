// Later, and elsewhere: what the main thread asks for instead of timers and threads. Callbacks run
// on the main thread, one at a time, never inside the call that asked for them; only `work` runs on
// another thread, on what it was given and nothing else.
//
// All calls come from the main thread. A scheduler that ends waits for the work that runs and drops
// everything that was still to come.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace embrix {

enum class WorkPriority {
  utility,        // nobody waits for it: measuring, saving, asking other programs
  userInitiated,  // the user watches it happen
};

// A callback that is still to come. It never comes once this is destroyed or cancelled, so an
// object that keeps it as a field is safe from callbacks after its end.
class [[nodiscard]] Scheduled {
 public:
  Scheduled() = default;
  Scheduled(Scheduled&&) noexcept = default;
  Scheduled& operator=(Scheduled&& other) noexcept {
    if (this != &other) {
      cancel();
      callback_ = std::move(other.callback_);
    }
    return *this;
  }
  ~Scheduled() { cancel(); }

  // What the callback holds is let go at once. Work that already runs goes on to its end.
  void cancel() noexcept {
    if (callback_) *callback_ = nullptr;
    callback_.reset();
  }

  // The callback comes whatever becomes of this object.
  void detach() noexcept { callback_.reset(); }

  // False once it came, was cancelled or detached.
  bool isPending() const noexcept { return callback_ && *callback_; }

 private:
  friend class Scheduler;
  std::shared_ptr<std::function<void()>> callback_;
};

class Scheduler {
 public:
  Scheduler() = default;
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  virtual ~Scheduler() = default;

  // Seconds since 1970 by the wall clock, which can be set.
  virtual double wallTime() = 0;

  // Seconds since the machine started; never goes back.
  virtual double uptime() = 0;

  // In so many seconds of uptime; as soon as the main thread is free for 0 and less.
  Scheduled after(double seconds, std::function<void()> callback) {
    Scheduled scheduled;
    runAfter(seconds, held(std::move(callback), scheduled));
    return scheduled;
  }

  // Runs `work` on another thread, then `then` on the main one, with what `work` returned if it
  // returned anything. Neither may throw. Work of the same priority begins in the order in which it
  // was asked for, and may overlap.
  template <typename Work, typename Then>
  Scheduled background(WorkPriority priority, Work work, Then then) {
    using Result = std::invoke_result_t<Work&>;
    Scheduled scheduled;
    if constexpr (std::is_void_v<Result>) {
      auto callback = held(std::move(then), scheduled);
      runInBackground(priority, std::move(work), std::move(callback));
    } else {
      const auto result = std::make_shared<std::optional<Result>>();
      auto callback = held(
          [result, then = std::move(then)]() mutable { then(std::move(**result)); }, scheduled);
      runInBackground(
          priority, [result, work = std::move(work)]() mutable { result->emplace(work()); },
          std::move(callback));
    }
    return scheduled;
  }

 protected:
  virtual void runAfter(double seconds, std::function<void()> callback) = 0;

  // `then` is called, and destroyed, on the main thread alone.
  virtual void runInBackground(WorkPriority priority, std::function<void()> work,
                               std::function<void()> then) = 0;

 private:
  // The callback as the handle can take it away.
  static std::function<void()> held(std::function<void()> callback, Scheduled& scheduled) {
    scheduled.callback_ = std::make_shared<std::function<void()>>(std::move(callback));
    return [callback = scheduled.callback_] {
      if (const auto call = std::exchange(*callback, nullptr)) call();
    };
  }
};

}  // namespace embrix
