// A library whose functions are looked up while the program runs, because no header declares them:
// they can be missing in any version of the system.
#pragma once

#include <dlfcn.h>

namespace embrix {

class PrivateLibrary {
 public:
  // Kept open for the life of the process: what it handed out lives as long.
  explicit PrivateLibrary(const char* path) : handle_(::dlopen(path, RTLD_NOW)) {}

  // Null when the library or the function is missing. `Function` must be what the library means.
  template <typename Function>
  Function* function(const char* name) const {
    if (handle_ == nullptr) return nullptr;
    return reinterpret_cast<Function*>(::dlsym(handle_, name));
  }

 private:
  void* handle_;
};

}  // namespace embrix
