// What this process asks of the disk while an object of this lives, in order: "flush a.json",
// "rename a.json" (the new name) and "flush folder". A file beside another is called by the other's
// name. One at a time, on one thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace embrix {

class DiskCalls {
 public:
  DiskCalls();
  ~DiskCalls();
  DiskCalls(const DiskCalls&) = delete;
  DiskCalls& operator=(const DiskCalls&) = delete;

  const std::vector<std::string>& log() const { return log_; }
  void note(std::string call) { log_.push_back(std::move(call)); }

  // A disk with room for so many bytes more. Whoever asks for more finds it full, with what was
  // left of it filled, until a file is removed.
  void leaveRoom(std::size_t bytes) { room_ = most_ = bytes; }
  bool takeRoom(std::size_t bytes);
  void giveRoomBack() { room_ = most_; }

 private:
  static constexpr std::size_t kEndless = static_cast<std::size_t>(-1);

  std::vector<std::string> log_;
  std::size_t room_ = kEndless;
  std::size_t most_ = kEndless;
};

}  // namespace embrix
