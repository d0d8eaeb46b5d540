#include "hosts/linux/tree_walker.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace embrix {

namespace {

constexpr std::size_t kPieceSize = 64 * 1024;  // bytes
constexpr std::int64_t kBlock = 512;           // bytes, the unit of stx_blocks
constexpr std::size_t kFilesBetweenLooks = 256;

// A record of getdents64, whose name follows it.
struct EntryHead {
  std::uint64_t inode;
  std::int64_t position;  // where the entry behind it begins
  std::uint16_t size;
  std::uint8_t kind;
};
constexpr std::size_t kNameOffset = 19;
static_assert(offsetof(dirent64, d_name) == kNameOffset && offsetof(dirent64, d_type) == 18 &&
              offsetof(dirent64, d_off) == 8 && offsetof(dirent64, d_reclen) == 16);

bool isDots(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

std::uint64_t volumeOf(const Descriptor& folder) {
  struct statx status {};
  ::statx(folder.number(), "", AT_EMPTY_PATH, STATX_MNT_ID, &status);
  if ((status.stx_mask & STATX_MNT_ID) != 0) return status.stx_mnt_id;
  return gnu_dev_makedev(status.stx_dev_major, status.stx_dev_minor);
}

TreeWalker::TreeWalker(TreeMeasurement& measurement, std::function<void()> onManyFiles)
    : measurement_(measurement),
      onManyFiles_(std::move(onManyFiles)),
      piece_(kPieceSize),
      kernelKeepsToVolume_(measurement.options.kernelKeepsToVolume) {}

void TreeWalker::walk(Descriptor folder) {
  enter(std::move(folder));
  while (depth_ > 0) {
    Level& level = levels_[depth_ - 1];
    if (measurement_.watch.abandoned() || (level.isRead && level.next == level.names.size())) {
      leave();
    } else if (level.next < level.names.size()) {
      const std::size_t name = level.next;
      level.next += std::strlen(level.names.data() + name) + 1;
      goInto(level, level.names.data() + name);
    } else {
      readPiece(level);
    }
  }
}

void TreeWalker::enter(Descriptor folder) {
  if (depth_ == levels_.size()) levels_.emplace_back();
  Level& level = levels_[depth_++];
  level.folder = std::move(folder);
  level.position = 0;
  level.isRead = false;
  level.names.clear();
  level.next = 0;
  if (depth_ - firstOpen_ > measurement_.options.openFolders) closeShallowest();
}

void TreeWalker::closeShallowest() {
  Level& level = levels_[firstOpen_++];
  struct stat status {};
  ::fstat(level.folder.number(), &status);
  level.number = {.device = status.st_dev, .inode = status.st_ino};
  level.folder.close();
}

void TreeWalker::leave() {
  const Descriptor left = std::move(levels_[--depth_].folder);
  if (depth_ > 0 && depth_ == firstOpen_) reopenParent(left);
}

void TreeWalker::reopenParent(const Descriptor& child) {
  Level& parent = levels_[depth_ - 1];
  Descriptor folder(::openat(child.number(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  const bool isSame =
      folder.isOpen() && ::fstat(folder.number(), &status) == 0 &&
      parent.number == FileNumber{.device = status.st_dev, .inode = status.st_ino} &&
      ::lseek(folder.number(), parent.position, SEEK_SET) == parent.position;
  if (isSame) {
    parent.folder = std::move(folder);
    firstOpen_ -= 1;
  } else {
    // Somebody has moved it away in the meantime, and with it everything above.
    depth_ = 0;
    firstOpen_ = 0;
  }
}

void TreeWalker::readPiece(Level& level) {
  const auto size = ::syscall(SYS_getdents64, level.folder.number(), piece_.data(), piece_.size());
  if (size <= 0) {
    level.isRead = true;
    return;
  }
  sortPiece(static_cast<std::size_t>(size), level);
  measureFiles(level);
  level.names.clear();
  level.next = 0;
  for (const Entry& folder : folders_) level.names.append(folder.name).push_back('\0');
}

// Into folders, files and what is neither, each in the order of its inodes, which is roughly that
// of the disk.
void TreeWalker::sortPiece(std::size_t size, Level& level) {
  files_.clear();
  folders_.clear();
  for (std::size_t at = 0; at < size;) {
    EntryHead head;
    std::memcpy(&head, piece_.data() + at, sizeof head);
    const Entry entry{.inode = head.inode, .name = piece_.data() + at + kNameOffset};
    if (head.kind == DT_DIR) {
      if (!isDots(entry.name)) folders_.push_back(entry);
    } else if (head.kind == DT_REG || head.kind == DT_UNKNOWN) {
      if (!isDots(entry.name)) files_.push_back(entry);
    }
    level.position = head.position;
    at += head.size;
  }
  const auto byInode = [](const Entry& a, const Entry& b) { return a.inode < b.inode; };
  std::sort(files_.begin(), files_.end(), byInode);
  std::sort(folders_.begin(), folders_.end(), byInode);
}

void TreeWalker::measureFiles(const Level& level) {
  std::int64_t bytes = 0;
  std::uint64_t count = 0;
  manyNamed_.clear();
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (i % kFilesBetweenLooks == 0 && measurement_.watch.abandoned()) return;
    struct statx status {};
    if (::statx(level.folder.number(), files_[i].name,
                AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC,
                STATX_TYPE | STATX_INO | STATX_NLINK | STATX_BLOCKS, &status) != 0) {
      continue;
    }
    if (S_ISDIR(status.stx_mode)) folders_.push_back(files_[i]);
    if (!S_ISREG(status.stx_mode) || (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) continue;
    const auto own = static_cast<std::int64_t>(status.stx_blocks) * kBlock;
    count += 1;
    if (status.stx_nlink < 2) {
      bytes += own;
    } else {
      manyNamed_.push_back(
          {.number = {.device = gnu_dev_makedev(status.stx_dev_major, status.stx_dev_minor),
                      .inode = status.stx_ino},
           .bytes = own});
    }
  }
  bytes += measurement_.manyNamed.bytesOfNew(manyNamed_);
  measurement_.bytes.fetch_add(bytes, std::memory_order_relaxed);
  measurement_.watch.add(count, bytes);
  filesSeen_ += count;
  if (filesSeen_ > measurement_.options.filesAlone && onManyFiles_)
    std::exchange(onManyFiles_, nullptr)();
}

void TreeWalker::goInto(const Level& level, const char* name) {
  Descriptor folder = open(level.folder, name);
  if (!folder.isOpen()) return;
  if (measurement_.folders.isWanted() && measurement_.folders.offer(folder)) return;
  enter(std::move(folder));
}

Descriptor TreeWalker::open(const Descriptor& parent, const char* name) {
  constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  // Only the owner may leave the date of last access alone.
  Descriptor folder = openOnVolume(parent, name, kFlags | O_NOATIME);
  if (!folder.isOpen() && errno == EPERM) folder = openOnVolume(parent, name, kFlags);
  return folder;
}

Descriptor TreeWalker::openOnVolume(const Descriptor& parent, const char* name, int flags) {
  if (kernelKeepsToVolume_) {
    open_how how{.flags = static_cast<std::uint64_t>(flags),
                 .mode = 0,
                 .resolve = RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS};
    const auto number = ::syscall(SYS_openat2, parent.number(), name, &how, sizeof how);
    // A sandbox answers with EPERM to calls that it does not know; a folder that may not be read is
    // EACCES.
    const bool isUnknown =
        number < 0 && (errno == ENOSYS || (errno == EPERM && (flags & O_NOATIME) == 0));
    if (!isUnknown) return Descriptor(static_cast<int>(number));
    kernelKeepsToVolume_ = false;
  }
  Descriptor folder(::openat(parent.number(), name, flags));
  if (folder.isOpen() && volumeOf(folder) != measurement_.volume) return {};
  return folder;
}

}  // namespace embrix
