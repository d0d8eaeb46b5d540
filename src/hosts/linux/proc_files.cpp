#include "hosts/linux/proc_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <utility>

namespace embrix {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
// Handles left to the rest of the program: D-Bus, records, windows.
constexpr int kReservedHandles = 256;

// Lifts the soft limit to the hard one and says how many files may be kept.
int handlesToKeep() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return 0;
  if (limit.rlim_cur < limit.rlim_max) {
    const rlimit raised{limit.rlim_max, limit.rlim_max};
    if (setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
  }
  const auto most = static_cast<int>(std::min<rlim_t>(limit.rlim_cur, 1 << 20));
  return std::max(0, most - kReservedHandles);
}

}  // namespace

KeptFile::KeptFile(KeptFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      inUse_(std::exchange(other.inUse_, nullptr)) {}

KeptFile& KeptFile::operator=(KeptFile&& other) noexcept {
  if (this != &other) {
    close();
    descriptor_ = std::exchange(other.descriptor_, -1);
    inUse_ = std::exchange(other.inUse_, nullptr);
  }
  return *this;
}

KeptFile::~KeptFile() {
  close();
}

void KeptFile::close() {
  if (descriptor_ < 0) return;
  ::close(std::exchange(descriptor_, -1));
  --*std::exchange(inUse_, nullptr);
}

ProcFiles::ProcFiles(const std::string& root, std::optional<int> keptLimit)
    : directory_(::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      keptLimit_(keptLimit ? *keptLimit : handlesToKeep()),
      buffer_(kBufferSize) {}

ProcFiles::~ProcFiles() {
  if (directory_ >= 0) ::close(directory_);
}

int ProcFiles::open(const char* path) const {
  return ::openat(directory_, path, O_RDONLY | O_CLOEXEC);
}

std::optional<std::string_view> ProcFiles::readFrom(int descriptor) {
  const ssize_t size = ::pread(descriptor, buffer_.data(), buffer_.size(), 0);
  if (size < 0) return std::nullopt;
  return std::string_view(buffer_.data(), static_cast<std::size_t>(size));
}

std::optional<std::string_view> ProcFiles::read(const char* path) {
  const int descriptor = open(path);
  if (descriptor < 0) return std::nullopt;
  const auto text = readFrom(descriptor);
  ::close(descriptor);
  return text;
}

std::optional<std::string_view> ProcFiles::read(KeptFile& file, const char* path) {
  if (file.isOpen()) return readFrom(file.descriptor_);
  if (*kept_ >= keptLimit_) return read(path);
  const int descriptor = open(path);
  if (descriptor < 0) return std::nullopt;
  file.descriptor_ = descriptor;
  file.inUse_ = kept_.get();
  ++*kept_;
  return readFrom(descriptor);
}

std::optional<std::string> ProcFiles::readWhole(const char* path) const {
  const int descriptor = open(path);
  if (descriptor < 0) return std::nullopt;
  std::string text;
  ssize_t size = 0;
  do {
    const std::size_t start = text.size();
    text.resize(start + kBufferSize);
    size = ::read(descriptor, text.data() + start, kBufferSize);
    text.resize(start + static_cast<std::size_t>(std::max<ssize_t>(0, size)));
  } while (size > 0 && text.size() < kMostBytes);
  ::close(descriptor);
  if (size < 0) return std::nullopt;
  return text;
}

std::optional<std::string> ProcFiles::link(const char* path) {
  const ssize_t size = ::readlinkat(directory_, path, buffer_.data(), buffer_.size());
  if (size < 0) return std::nullopt;
  return std::string(buffer_.data(), static_cast<std::size_t>(size));
}

// Hands out the directory's descriptor, the number and the name it was read from.
template <typename Use>
void ProcFiles::forEachNumberIn(const char* path, Use use) {
  const int descriptor = ::openat(directory_, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  while (true) {
    const long size = ::syscall(SYS_getdents64, descriptor, buffer_.data(), buffer_.size());
    if (size <= 0) break;
    for (long at = 0; at < size;) {
      const char* record = buffer_.data() + at;
      std::uint16_t length = 0;
      std::memcpy(&length, record + offsetof(dirent64, d_reclen), sizeof length);
      const char* name = record + offsetof(dirent64, d_name);
      std::int32_t number = 0;
      const auto parsed = std::from_chars(name, name + strnlen(name, length), number);
      if (parsed.ec == std::errc() && *parsed.ptr == '\0' && number >= 0) {
        use(descriptor, number, name);
      }
      at += length;
    }
  }
  ::close(descriptor);
}

void ProcFiles::numbersIn(const char* path, std::vector<std::int32_t>& numbers) {
  numbers.clear();
  forEachNumberIn(path, [&](int, std::int32_t number, const char*) { numbers.push_back(number); });
}

void ProcFiles::forEachLinkIn(const char* path, const std::function<void(std::string_view)>& use) {
  forEachNumberIn(path, [&](int directory, std::int32_t, const char* name) {
    std::array<char, kMostOfALink> target;
    const ssize_t size = ::readlinkat(directory, name, target.data(), target.size());
    if (size > 0) use(std::string_view(target.data(), static_cast<std::size_t>(size)));
  });
}

ProcPath::ProcPath(std::int32_t pid, std::string_view file) {
  char* at = std::to_chars(text_, text_ + 12, pid).ptr;
  *at++ = '/';
  const std::size_t room = sizeof text_ - static_cast<std::size_t>(at - text_) - 1;
  at = std::copy_n(file.data(), std::min(file.size(), room), at);
  *at = '\0';
}

}  // namespace embrix
