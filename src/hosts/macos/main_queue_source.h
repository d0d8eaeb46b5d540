// Something that the system watches, and a function that it calls on the main queue when it came:
// once for everything that came since the last call. Made and destroyed on the main thread; the
// function is never called once this is gone.
#pragma once

#include <functional>
#include <memory>

namespace embrix {

class MainQueueSource {
 public:
  enum class Kind {
    signal,    // `handle` is the signal's number, which must be blocked
    readable,  // `handle` is a descriptor
    told,      // tell() was called
  };

  MainQueueSource(Kind kind, int handle, std::function<void()> came);
  ~MainQueueSource();
  MainQueueSource(const MainQueueSource&) = delete;
  MainQueueSource& operator=(const MainQueueSource&) = delete;

  void tell() const;  // any thread

 private:
  std::unique_ptr<std::function<void()>> came_;
  void* source_ = nullptr;  // a dispatch source; null when the system has none to give
};

}  // namespace embrix
