#include "base/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "base/descriptor.h"

namespace embrix {

namespace {

// Stands behind the name of a file that is being written; mkostemp fills in letters and digits.
constexpr std::string_view kBeside = ".new-XXXXXX";

constexpr std::size_t kLeastRoom = 16384;

// So many pieces at most in one call of the kernel; POSIX lets it take at least 16, all systems
// that this runs on take 1,024.
constexpr std::size_t kMostPieces = 1024;

// All pieces in as few calls as it takes: the kernel then finds room for a whole file in large
// parts instead of page by page, which costs it half.
bool writeAll(int fd, std::span<const std::string_view> pieces) {
  std::vector<iovec> rest;
  rest.reserve(pieces.size());
  for (const std::string_view piece : pieces) {
    // writev only reads what is there, but its declaration serves readv as well.
    if (!piece.empty()) rest.push_back({const_cast<char*>(piece.data()), piece.size()});
  }
  for (std::span<iovec> left = rest; !left.empty();) {
    const auto now = left.first(std::min(left.size(), kMostPieces));
    const ssize_t result = ::writev(fd, now.data(), static_cast<int>(now.size()));
    if (result < 0 && errno == EINTR) continue;
    if (result <= 0) return false;
    auto written = static_cast<std::size_t>(result);
    while (!left.empty() && written >= left.front().iov_len) {
      written -= left.front().iov_len;
      left = left.subspan(1);
    }
    if (written == 0) continue;
    iovec& half = left.front();
    half = {static_cast<char*>(half.iov_base) + written, half.iov_len - written};
  }
  return true;
}

// After it no crash of the machine can bring the new name without the bytes.
bool syncFile(int fd) {
#ifdef F_BARRIERFSYNC
  // Where fsync leaves the drive free to write in any order. F_FULLFSYNC would also wait until
  // everything else in the drive's cache is written.
  if (::fcntl(fd, F_BARRIERFSYNC) == 0) return true;
#endif
  return ::fsync(fd) == 0;
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

std::optional<std::string> readWholeFile(const std::string& path, std::size_t limit) {
  // Without O_NONBLOCK a named pipe in the file's place would hold the program for ever.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.isOpen()) return std::nullopt;
  struct stat facts = {};
  if (::fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;

  // Room for the whole file and one byte more, by which a file that has grown meanwhile is noticed;
  // files of the kernel's own have no size.
  const auto size = static_cast<std::size_t>(std::max<off_t>(facts.st_size, 0));
  std::string bytes(std::min(size, limit) + 1, '\0');
  for (std::size_t used = 0;;) {
    if (used == bytes.size()) bytes.resize(2 * used + kLeastRoom);
    const ssize_t got = ::read(file.number(), bytes.data() + used, bytes.size() - used);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    used += static_cast<std::size_t>(got);
    if (used > limit) return std::nullopt;
    if (got == 0) {
      bytes.resize(used);
      return bytes;
    }
  }
}

bool writeFileAtomically(const std::string& path, std::string_view bytes) {
  return writeFileAtomically(path, std::span(&bytes, 1));
}

bool writeFileAtomically(const std::string& path, std::span<const std::string_view> pieces) {
  if (!replaceFile(path, pieces)) return false;
  syncFolder(folderOf(path));
  return true;
}

bool replaceFile(const std::string& path, std::span<const std::string_view> pieces) {
  std::string beside = path + std::string(kBeside);
  Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));  // mode 0600
  if (!file.isOpen()) return false;
  const bool written = writeAll(file.number(), pieces) && syncFile(file.number()) && file.close();
  if (!written || std::rename(beside.c_str(), path.c_str()) != 0) {
    ::unlink(beside.c_str());
    return false;
  }
  return true;
}

void syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

void removeHalfWritten(const std::string& path) {
  const std::string folder = folderOf(path);
  const std::string_view name = std::string_view(path).substr(path.rfind('/') + 1);
  const std::string_view mark = kBeside.substr(0, kBeside.find('X'));
  const auto isBeside = [&](std::string_view other) {
    return other.size() == name.size() + kBeside.size() && other.starts_with(name) &&
           other.substr(name.size()).starts_with(mark);
  };
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (isBeside(entry->path().filename().native())) ::unlink(entry->path().c_str());
  }
}

}  // namespace embrix
