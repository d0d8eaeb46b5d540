// The files of a proc file system, read cheaply.
//
// Opening a file below /proc costs several times what reading it costs, so a file that is read at
// every tick can be kept open. Kept handles are counted, and stay below the process's own limit.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// An open file that may be kept; closed with its owner.
class KeptFile {
 public:
  KeptFile() = default;
  KeptFile(KeptFile&& other) noexcept;
  KeptFile& operator=(KeptFile&& other) noexcept;
  ~KeptFile();

  bool isOpen() const { return descriptor_ >= 0; }
  void close();

 private:
  friend class ProcFiles;
  int descriptor_ = -1;
  int* inUse_ = nullptr;  // the count of kept handles that this one is part of
};

class ProcFiles {
 public:
  // `root` is the proc file system itself, such as "/proc". At most `keptLimit` files are kept
  // open; by default as many as the process may have, less a reserve for everything else.
  explicit ProcFiles(const std::string& root, std::optional<int> keptLimit = std::nullopt);
  ~ProcFiles();
  ProcFiles(const ProcFiles&) = delete;
  ProcFiles& operator=(const ProcFiles&) = delete;

  // The file's content, or absent when it cannot be read: missing, forbidden, or of a process that
  // is gone. The text is valid until the next read. At most 64 KB are read.
  std::optional<std::string_view> read(const char* path);

  // The same through a handle that is opened at the first call and kept while there is room. A
  // kept handle belongs to one process for good: once that is gone it reads as absent, even if its
  // pid was given to another.
  std::optional<std::string_view> read(KeptFile& file, const char* path);

  // For files of any length, up to kMostBytes, read in as many pieces as the kernel hands out.
  static constexpr std::size_t kMostBytes = 8 * 1024 * 1024;
  std::optional<std::string> readWhole(const char* path) const;

  // Target of a symbolic link, absent when unreadable.
  std::optional<std::string> link(const char* path);

  // Names of a directory's entries that are decimal numbers, in the directory's order; empty when
  // unreadable.
  void numbersIn(const char* path, std::vector<std::int32_t>& numbers);

  // Hands out where each link points whose name in the directory is a decimal number, cut after
  // kMostOfALink bytes. Faster than asking for each by its whole path: the directory is found once.
  static constexpr std::size_t kMostOfALink = 64;
  void forEachLinkIn(const char* path, const std::function<void(std::string_view)>& use);

  int directory() const { return directory_; }
  int keptCount() const { return *kept_; }

 private:
  int open(const char* path) const;
  std::optional<std::string_view> readFrom(int descriptor);
  template <typename Use>
  void forEachNumberIn(const char* path, Use use);

  int directory_ = -1;
  int keptLimit_ = 0;
  std::unique_ptr<int> kept_ = std::make_unique<int>(0);
  std::vector<char> buffer_;
};

// A path below the proc file system, "1234/stat", made without an allocation.
class ProcPath {
 public:
  ProcPath(std::int32_t pid, std::string_view file);
  const char* text() const { return text_; }

 private:
  char text_[64];
};

}  // namespace embrix
