#include "disk_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

#include <fmt/format.h>

namespace embrix {

namespace {

DiskCalls* present = nullptr;

std::string nameOf(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return std::string(name.substr(0, name.find(".new-")));
}

std::string fileOf(int descriptor) {
  struct stat facts = {};
  if (::fstat(descriptor, &facts) == 0 && S_ISDIR(facts.st_mode)) return "folder";
  std::array<char, 4096> path = {};
  const std::string link = fmt::format("/proc/self/fd/{}", descriptor);
  const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
  return size < 0 ? "?" : nameOf({path.data(), static_cast<std::size_t>(size)});
}

}  // namespace

DiskCalls::DiskCalls() {
  present = this;
}

DiskCalls::~DiskCalls() {
  present = nullptr;
}

bool DiskCalls::takeRoom(std::size_t bytes) {
  if (room_ == kEndless) return true;
  const bool isEnough = bytes <= room_;
  room_ = isEnough ? room_ - bytes : 0;
  return isEnough;
}

}  // namespace embrix

// In place of the C library's, for this whole program.
extern "C" {

int fsync(int descriptor) {
  using namespace embrix;
  if (present != nullptr) present->note("flush " + fileOf(descriptor));
  return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

int rename(const char* from, const char* to) noexcept {
  using namespace embrix;
  if (present != nullptr) present->note("rename " + nameOf(to));
  return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int unlink(const char* path) noexcept {
  using namespace embrix;
  if (present != nullptr) present->giveRoomBack();
  return static_cast<int>(::syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

ssize_t writev(int descriptor, const iovec* pieces, int count) {
  using namespace embrix;
  std::size_t bytes = 0;
  for (int i = 0; i < count; ++i) bytes += pieces[i].iov_len;
  if (present != nullptr && !present->takeRoom(bytes)) {
    errno = ENOSPC;
    return -1;
  }
  return ::syscall(SYS_writev, descriptor, pieces, count);
}

}  // extern "C"
