#include "hosts/macos/linkless_path.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>

#include "base/path_text.h"

namespace embrix {

namespace {

constexpr mode_t kEverything = 0777;  // less the user's mask

double secondsOf(const timespec& time) {
  constexpr double kNanosecond = 1e-9;
  return static_cast<double>(time.tv_sec) + kNanosecond * static_cast<double>(time.tv_nsec);
}

FileKind kindOf(mode_t mode) {
  if (S_ISDIR(mode)) return FileKind::folder;
  if (S_ISREG(mode)) return FileKind::file;
  if (S_ISLNK(mode)) return FileKind::link;
  return FileKind::other;
}

}  // namespace

Descriptor openLinkless(const std::string& folder) {
  if (!folder.starts_with('/')) {
    errno = EINVAL;
    return {};
  }
  return Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW_ANY));
}

Descriptor openLinklessMade(const std::string& folder) {
  Descriptor opened = openLinkless(folder);
  if (opened.isOpen() || errno != ENOENT || folder == "/") return opened;
  const Descriptor parent = openLinklessMade(std::string(PathText::parent(folder)));
  if (!parent.isOpen()) return {};
  const std::string name(PathText::name(folder));
  if (::mkdirat(parent.number(), name.c_str(), kEverything) != 0 && errno != EEXIST) return {};
  return openLinkless(folder);
}

std::optional<FileFacts> linklessFacts(const std::string& path) {
  const Descriptor parent = openLinkless(std::string(PathText::parent(path)));
  if (!parent.isOpen()) return std::nullopt;
  const std::string name(PathText::name(path));
  return factsAt(parent.number(), name.empty() ? "." : name.c_str());
}

std::optional<FileFacts> factsAt(int folder, const char* name) {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return factsOf(status);
}

FileFacts factsOf(const struct stat& status) {
  constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
  // Damaged volumes hold any date: it only has to be the same each time.
  const auto born =
      static_cast<std::uint64_t>(status.st_birthtimespec.tv_sec) * kNanosecondsPerSecond +
      static_cast<std::uint64_t>(status.st_birthtimespec.tv_nsec);
  return {.kind = kindOf(status.st_mode),
          .modified = secondsOf(status.st_mtimespec),
          .identity = {.device = static_cast<std::uint64_t>(status.st_dev),
                       .inode = status.st_ino,
                       .born = static_cast<std::int64_t>(born)}};
}

}  // namespace embrix
