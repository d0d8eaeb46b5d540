// The files with several names that a measurement has met. Several threads at once.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "base/hash_map.h"
#include "hosts/linux/file_number.h"

namespace embrix {

class ManyNamed {
 public:
  struct File {
    FileNumber number;
    std::int64_t bytes = 0;  // on the disk
  };

  // The bytes of those that were not met before.
  std::int64_t bytesOfNew(const std::vector<File>& files) {
    if (files.empty()) return 0;
    const std::lock_guard lock(mutex_);
    std::int64_t bytes = 0;
    for (const File& file : files) {
      if (met_.insert(file.number).second) bytes += file.bytes;
    }
    return bytes;
  }

 private:
  std::mutex mutex_;
  HashSet<FileNumber> met_;
};

}  // namespace embrix
