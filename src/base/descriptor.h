// An open file descriptor that closes itself.
#pragma once

#include <unistd.h>

#include <utility>

namespace embrix {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      close();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  ~Descriptor() { close(); }

  bool isOpen() const noexcept { return number_ >= 0; }
  int number() const noexcept { return number_; }
  // Hands it to an owner who closes it himself.
  int release() noexcept { return std::exchange(number_, -1); }
  // False when it could not be: some file systems tell only here that the bytes did not fit. True
  // when nothing is open.
  bool close() noexcept {
    const int number = release();
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_ = -1;
};

}  // namespace embrix
