// A value that is made when it is first asked for, by whichever thread asks, and then stays. Any
// thread; whoever asks while it is being made waits for it.
#pragma once

#include <mutex>
#include <optional>

namespace embrix {

template <typename Value>
class MadeOnce {
 public:
  // Later calls return what the first `make` returned. One that throws made nothing.
  template <typename Make>
  const Value& get(Make make) const {
    std::call_once(made_, [&] { value_.emplace(make()); });
    return *value_;
  }

 private:
  mutable std::once_flag made_;
  mutable std::optional<Value> value_;
};

}  // namespace embrix
