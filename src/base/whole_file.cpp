#include "base/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <system_error>
#include <utility>

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

// Has the bytes begin their way to the device, where that can be asked for. Those of several files
// then travel together, and the file system's own record of all of them is written once.
void startSync([[maybe_unused]] int fd) {
#ifdef SYNC_FILE_RANGE_WRITE
  ::sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
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

// Makes the names of the files in that folder last, as far as its file system can.
void syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

// The bytes of a file beside it, which are gone again unless they take its place.
class BesideFile {
 public:
  explicit BesideFile(const NewFile& file)
      : path_(file.path),
        beside_(path_ + std::string(kBeside)),
        file_(::mkostemp(beside_.data(), O_CLOEXEC)),  // mode 0600
        isThere_(file_.isOpen()) {
    if (isThere_ && !writeAll(file_.number(), file.pieces)) giveUp();
  }
  ~BesideFile() { giveUp(); }
  BesideFile(const BesideFile&) = delete;
  BesideFile& operator=(const BesideFile&) = delete;

  void beginToSync() {
    if (isThere_) startSync(file_.number());
  }
  void sync() {
    if (isThere_ && !(syncFile(file_.number()) && file_.close())) giveUp();
  }

  // False when this or any step before it failed.
  bool takePlace() {
    if (!isThere_ || std::rename(beside_.c_str(), path_.c_str()) != 0) return false;
    isThere_ = false;
    return true;
  }

 private:
  // At once, so that others have the room and the descriptor.
  void giveUp() {
    if (isThere_) ::unlink(beside_.c_str());
    isThere_ = false;
    file_.close();
  }

  std::string path_;
  std::string beside_;
  Descriptor file_;
  bool isThere_;
};

bool replaceAlone(const NewFile& file) {
  BesideFile beside(file);
  beside.sync();
  return beside.takePlace();
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
  const NewFile file{path, {pieces.begin(), pieces.end()}};
  return writeFilesAtomically(folderOf(path), std::span(&file, 1));
}

bool writeFileUnflushed(const std::string& path, std::string_view bytes) {
  return BesideFile({path, {bytes}}).takePlace();
}

bool writeFilesAtomically(const std::string& folder, std::span<const NewFile> files) {
  std::deque<BesideFile> together;
  for (const NewFile& file : files) together.emplace_back(file).beginToSync();
  for (BesideFile& file : together) file.sync();
  std::vector<const NewFile*> left;
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (!together[i].takePlace()) left.push_back(&files[i]);
  }
  together.clear();
  // What found no room or no descriptor beside the others may find them now.
  bool allAre = true;
  for (const NewFile* file : left) allAre &= files.size() > 1 && replaceAlone(*file);
  syncFolder(folder);
  return allAre;
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
