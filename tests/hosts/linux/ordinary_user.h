// While it lives, this thread, and those that it starts, may do with files what anybody may: tests
// of forbidden files mean something for the superuser too.
#pragma once

#include <sys/fsuid.h>
#include <unistd.h>

namespace embrix {

class OrdinaryUser {
 public:
  static constexpr uid_t kNobody = 65'534;

  OrdinaryUser() { ::setfsuid(kNobody); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() { ::setfsuid(::geteuid()); }
};

}  // namespace embrix
