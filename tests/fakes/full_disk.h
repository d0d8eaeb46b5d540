// While it lives, no file of this process can grow beyond a few bytes: writing fails half-way, as
// on a disk that fills up.
#pragma once

#include <sys/resource.h>
#include <csignal>

namespace embrix {

class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_ = {};
  void (*handler_)(int) = nullptr;
};

}  // namespace embrix
