// Keeps a folder of records for one running program: two that write the same files would each undo
// what the other saved. Main thread.
#pragma once

#include <string>

#include "base/descriptor.h"

namespace embrix {

class RecordsLock {
 public:
  // The lock is an empty file in the folder, which is made where it is missing. Where the lock
  // cannot be had for any other reason than somebody holding it, such as a folder that cannot be
  // written, there is nothing to protect, and the run goes on.
  static constexpr const char* kFileName = "embrix.lock";

  // An empty folder is nobody's.
  explicit RecordsLock(const std::string& folder);

  // Another program holds it. It is given up when that one ends, however it does.
  bool isHeldByAnother() const { return isHeldByAnother_; }

 private:
  Descriptor file_;
  bool isHeldByAnother_ = false;
};

}  // namespace embrix
