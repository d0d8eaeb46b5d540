// Another volume than the one that temporary files are on: a small file system in memory, mounted
// where the test wants it. Where mounting is not allowed, a folder in the machine's shared memory,
// which is a volume too.
#pragma once

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace embrix {

class OtherVolume {
 public:
  // `at` is an empty folder. `options` as tmpfs takes them, such as "size=1m,nr_inodes=20".
  explicit OtherVolume(const std::string& at, const char* options = "size=16m") {
    if (::mount("tmpfs", at.c_str(), "tmpfs", 0, options) == 0) {
      isMounted_ = true;
      top_ = path_ = at;
      return;
    }
    top_ = "/dev/shm";
    std::string pattern = top_ + "/embrix-test.XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no other volume");
    path_ = pattern;
    hadTrash_ = std::filesystem::exists(trash());
  }
  OtherVolume(const OtherVolume&) = delete;
  OtherVolume& operator=(const OtherVolume&) = delete;
  ~OtherVolume() {
    std::error_code ignored;
    if (isMounted_) {
      ::umount2(path_.c_str(), MNT_DETACH);
    } else {
      std::filesystem::remove_all(path_, ignored);
      if (!hadTrash_) std::filesystem::remove_all(trash(), ignored);
    }
  }

  bool isMounted() const { return isMounted_; }
  const std::string& path() const { return path_; }  // a folder of the test's own on the volume
  const std::string& top() const { return top_; }    // where the volume is mounted
  std::string trash() const { return top_ + "/.Trash-" + std::to_string(::getuid()); }

 private:
  bool isMounted_ = false;
  bool hadTrash_ = false;
  std::string path_;
  std::string top_;
};

}  // namespace embrix
