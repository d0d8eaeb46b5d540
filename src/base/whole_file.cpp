#include "base/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace embrix {

namespace {

// An open descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  int get() const { return fd_; }
  bool isOpen() const { return fd_ >= 0; }

  // Some file systems tell only here that the bytes did not fit.
  bool close() {
    if (fd_ < 0) return true;
    const int result = ::close(fd_);
    fd_ = -1;
    return result == 0;
  }

 private:
  int fd_;
};

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// Makes the new name itself last. Not every file system can; the rename stands all the same.
void syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.get());
}

}  // namespace

std::optional<std::string> readWholeFile(const std::string& path, std::size_t limit) {
  // Without O_NONBLOCK a named pipe in the file's place would hold the program for ever.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.isOpen()) return std::nullopt;
  struct stat facts = {};
  if (::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;

  std::string bytes;
  char piece[16384];
  for (;;) {
    const ssize_t got = ::read(file.get(), piece, sizeof piece);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) return bytes;
    bytes.append(piece, static_cast<std::size_t>(got));
    if (bytes.size() > limit) return std::nullopt;
  }
}

bool writeFileAtomically(const std::string& path, std::string_view bytes) {
  std::string beside = path + ".XXXXXX";
  Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));  // mode 0600
  if (!file.isOpen()) return false;
  const bool written = writeAll(file.get(), bytes) && ::fsync(file.get()) == 0 && file.close();
  if (!written || std::rename(beside.c_str(), path.c_str()) != 0) {
    ::unlink(beside.c_str());
    return false;
  }
  syncFolder(folderOf(path));
  return true;
}

}  // namespace embrix
