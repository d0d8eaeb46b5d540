// Owns one reference to an IOKit object (a service, an iterator) and releases it once.
#pragma once

#include <IOKit/IOKitLib.h>

#include <utility>

namespace embrix {

class IoHolder {
 public:
  IoHolder() noexcept = default;
  explicit IoHolder(io_object_t owned) noexcept : owned_(owned) {}
  IoHolder(IoHolder&& other) noexcept : owned_(std::exchange(other.owned_, IO_OBJECT_NULL)) {}
  IoHolder& operator=(IoHolder&& other) noexcept {
    std::swap(owned_, other.owned_);
    return *this;
  }
  IoHolder(const IoHolder&) = delete;
  IoHolder& operator=(const IoHolder&) = delete;
  ~IoHolder() {
    if (owned_ != IO_OBJECT_NULL) IOObjectRelease(owned_);
  }

  io_object_t get() const noexcept { return owned_; }
  explicit operator bool() const noexcept { return owned_ != IO_OBJECT_NULL; }

  // Where a function writes the reference that it hands over. Only for an empty holder.
  io_object_t* out() noexcept { return &owned_; }

 private:
  io_object_t owned_ = IO_OBJECT_NULL;
};

}  // namespace embrix
