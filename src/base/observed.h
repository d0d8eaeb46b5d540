// A value whose readers are told when it changes: how the model and the surfaces hang together.
// Assigning an equal value tells nobody. Main thread only.
//
// A reader may do anything while it is told: assign the value anew (everybody is then told of the
// newest, and only of that), subscribe, end its own or another subscription, even destroy the
// observed object.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace embrix {

// Ends when it is destroyed. May outlive what it subscribes to.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> held) : held_(std::move(held)) {}

  void end() noexcept { held_.reset(); }

 private:
  std::shared_ptr<void> held_;
};

template <typename T>
class Observed {
 public:
  using Reader = std::function<void(const T&)>;

  Observed() = default;
  explicit Observed(T value) : value_(std::move(value)) {}
  // Readers belong to one object; a copy would leave it open to which.
  Observed(const Observed&) = delete;
  Observed& operator=(const Observed&) = delete;

  const T& get() const noexcept { return value_; }
  const T& operator*() const noexcept { return value_; }
  const T* operator->() const noexcept { return &value_; }

  void set(T value) {
    if (value == value_) return;
    value_ = std::move(value);
    tell();
  }
  Observed& operator=(T value) {
    set(std::move(value));
    return *this;
  }

  // Puts the value there and tells of it without comparing: for values that are large and new each
  // time. Gives back what stood there.
  T exchange(T value) {
    std::swap(value_, value);
    tell();
    return value;
  }

  // Changes the value where it stands, for values too large to copy. Tells of it, unless `change`
  // returns false.
  template <typename Change>
  void change(Change change) {
    if constexpr (std::is_same_v<std::invoke_result_t<Change&, T&>, bool>) {
      if (!change(value_)) return;
    } else {
      change(value_);
    }
    tell();
  }

  // From hold to release nobody is told; then everybody once, of the newest value, if it changed.
  // What several values tell together can thus be told when all of them have changed.
  void hold() noexcept { isHeld_ = true; }
  void release() {
    isHeld_ = false;
    if (std::exchange(hasNews_, false)) tell();
  }

  // The reader is told from the next change on, not of the present value.
  Subscription subscribe(Reader reader) const {
    const auto held = std::make_shared<Reader>(std::move(reader));
    readers_.push_back(held);
    return Subscription(held);
  }

 private:
  void tell() {
    if (isHeld_) {
      hasNews_ = true;
      return;
    }
    std::erase_if(readers_, [](const auto& reader) { return reader.expired(); });
    const auto round = round_ = std::make_shared<const int>();
    const auto told = readers_;  // a reader that subscribes changes the list
    for (const auto& reader : told) {
      if (const auto held = reader.lock()) (*held)(value_);
      // This object is gone, or the reader has assigned a newer value and all were told of that.
      if (round.use_count() == 1) return;
    }
  }

  T value_{};
  bool isHeld_ = false;
  bool hasNews_ = false;              // while held
  std::shared_ptr<const int> round_;  // of the newest telling
  mutable std::vector<std::weak_ptr<Reader>> readers_;
};

}  // namespace embrix
