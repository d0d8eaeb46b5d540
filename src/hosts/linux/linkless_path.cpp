#include "hosts/linux/linkless_path.h"

#include <fcntl.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "base/text.h"

namespace embrix {

namespace {

constexpr int kPassThrough = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kEverything = 0777;  // less the user's mask

enum class Missing { fails, isMade };

Descriptor step(const Descriptor& folder, const char* name, Missing missing) {
  Descriptor next(::openat(folder.number(), name, kPassThrough));
  if (next.isOpen() || errno != ENOENT || missing == Missing::fails) return next;
  if (::mkdirat(folder.number(), name, kEverything) != 0 && errno != EEXIST) return {};
  return Descriptor(::openat(folder.number(), name, kPassThrough));
}

bool isPlain(const std::string& path, const std::vector<std::string_view>& pieces) {
  return path.starts_with('/') && path.find('\0') == std::string::npos &&
         std::none_of(pieces.begin(), pieces.end(),
                      [](std::string_view piece) { return piece == "." || piece == ".."; });
}

LinklessPlace walk(const std::string& path, Missing missing) {
  const auto pieces = Text::split(path, '/');
  if (!isPlain(path, pieces)) {
    errno = EINVAL;
    return {};
  }
  Descriptor folder(::open("/", kPassThrough));
  for (std::size_t i = 0; i + 1 < pieces.size() && folder.isOpen(); ++i) {
    folder = step(folder, std::string(pieces[i]).c_str(), missing);
  }
  return {.folder = std::move(folder),
          .name = pieces.empty() ? std::string() : std::string(pieces.back())};
}

}  // namespace

LinklessPlace linklessPlace(const std::string& path) {
  return walk(path, Missing::fails);
}

LinklessPlace linklessPlaceMade(const std::string& path) {
  return walk(path, Missing::isMade);
}

Descriptor openLinkless(const std::string& path) {
  const LinklessPlace place = linklessPlace(path);
  if (!place.folder.isOpen()) return {};
  constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  const char* const name = place.name.empty() ? "." : place.name.c_str();
  // Only the owner may leave the date of last access alone.
  Descriptor folder(::openat(place.folder.number(), name, kFlags | O_NOATIME));
  if (!folder.isOpen() && errno == EPERM) {
    folder = Descriptor(::openat(place.folder.number(), name, kFlags));
  }
  return folder;
}

double secondsOf(const struct statx_timestamp& time) {
  constexpr double kNanosecond = 1e-9;
  return static_cast<double>(time.tv_sec) + kNanosecond * static_cast<double>(time.tv_nsec);
}

FileKind kindOf(unsigned mode) {
  switch (mode & S_IFMT) {
    case S_IFDIR:
      return FileKind::folder;
    case S_IFREG:
      return FileKind::file;
    case S_IFLNK:
      return FileKind::link;
    default:
      return FileKind::other;
  }
}

std::optional<FileFacts> factsAt(int folder, const char* name) {
  struct statx status {};
  if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_TYPE | STATX_INO | STATX_MTIME | STATX_BTIME, &status) != 0) {
    return std::nullopt;
  }
  FileFacts facts{
      .kind = kindOf(status.stx_mode),
      .modified = secondsOf(status.stx_mtime),
      .identity = {.device = gnu_dev_makedev(status.stx_dev_major, status.stx_dev_minor),
                   .inode = status.stx_ino,
                   .born = std::nullopt}};
  if ((status.stx_mask & STATX_BTIME) != 0) {
    // Damaged file systems hold any date: it only has to be the same each time.
    constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
    facts.identity.born = static_cast<std::int64_t>(
        static_cast<std::uint64_t>(status.stx_btime.tv_sec) * kNanosecondsPerSecond +
        status.stx_btime.tv_nsec);
  }
  return facts;
}

}  // namespace embrix
