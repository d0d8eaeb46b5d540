// Gives back what the system's frameworks leave to be released later, at the end of a scope. The
// sampling thread belongs to no framework: without this such objects would gather for as long as
// the program runs. For C++ files; Objective-C++ has @autoreleasepool.
#pragma once

extern "C" {
// The compiler's own interface to the Objective-C runtime: what @autoreleasepool becomes.
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace embrix {

class AutoreleasePool {
 public:
  AutoreleasePool() noexcept : pool_(objc_autoreleasePoolPush()) {}
  ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
  void* pool_;
};

}  // namespace embrix
