// Folders as they stand on the disk: what is in them, when it changed, how much room it takes.
//
// Nothing here follows a symbolic link unless it says so, not even one in the middle of a path: a
// path that leads through a link names nothing. Callers that were given a path by the user resolve
// it first. Any thread; calls may overlap.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

enum class FileKind { folder, file, link, other };

// Which thing stands at a path, so that another one under the same name is told from it. An inode
// number alone is not enough: it is given to the next file as soon as its file is gone.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::optional<std::int64_t> born;  // nanoseconds since 1970; absent where nobody keeps it

  bool operator==(const FileIdentity&) const = default;
};

struct FileFacts {
  FileKind kind = FileKind::other;
  double modified = 0;  // seconds since 1970
  FileIdentity identity;

  bool operator==(const FileFacts&) const = default;
};

struct FolderEntry {
  std::string name;  // any bytes but "/" and NUL
  FileKind kind = FileKind::other;
  double modified = 0;  // seconds since 1970
  bool hidden = false;  // begins with a dot, or is hidden by the platform's own mark

  bool operator==(const FolderEntry&) const = default;
};

// Shared by the one who waits for a measurement and the threads that make it.
class MeasureWatch {
 public:
  // The measurement ends as soon as it notices, which is within a few hundred files.
  void abandon() noexcept { abandoned_.store(true, std::memory_order_relaxed); }
  bool abandoned() const noexcept { return abandoned_.load(std::memory_order_relaxed); }

  void add(std::uint64_t files, std::int64_t bytes) noexcept {
    files_.fetch_add(files, std::memory_order_relaxed);
    bytes_.fetch_add(bytes, std::memory_order_relaxed);
  }
  std::uint64_t files() const noexcept { return files_.load(std::memory_order_relaxed); }
  std::int64_t bytes() const noexcept { return bytes_.load(std::memory_order_relaxed); }

 private:
  std::atomic<bool> abandoned_ = false;
  std::atomic<std::uint64_t> files_ = 0;
  std::atomic<std::int64_t> bytes_ = 0;
};

// Where the desktop's base-directory rules put what this user's programs can make again and what
// they keep. Absolute paths without a slash at their end.
struct BaseFolders {
  std::string cache;
  std::string data;

  bool operator==(const BaseFolders&) const = default;
};

class FolderSource {
 public:
  virtual ~FolderSource() = default;

  // Absent on a system without such rules, where caches stand at fixed places below the home.
  virtual std::optional<BaseFolders> baseFolders() = 0;

  // The path with every link in it resolved; absent when nothing stands there.
  virtual std::optional<std::string> resolved(const std::string& path) = 0;

  // Whether something stands at the path, links followed. False too when nobody can tell.
  virtual bool exists(const std::string& path) = 0;

  // Absent when nothing stands there or it cannot be read. A link is a thing of its own.
  virtual std::optional<FileFacts> facts(const std::string& path) = 0;

  // Everything in the folder, in no order. Empty when it is no folder or cannot be read; entries
  // that cannot be read are left out.
  virtual std::vector<FolderEntry> list(const std::string& folder) = 0;

  // Bytes that the regular files below the folder take on the disk, hidden ones included, each file
  // once however many names it has there. Stays on the volume mounted at the folder. What cannot be
  // read adds nothing, so an unreadable folder gives 0. The watch is told as the work goes on.
  // Absent when the measurement was abandoned.
  virtual std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) = 0;
};

}  // namespace embrix
