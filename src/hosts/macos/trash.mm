#include "hosts/macos/trash.h"

#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <stdio.h>
#include <sys/mount.h>

#include <cerrno>
#include <vector>

#include "base/path_text.h"
#include "hosts/macos/linkless_path.h"

namespace embrix {

namespace {

// Whether a volume is mounted at the path or below it. True too when the system does not tell.
bool holdsVolume(const std::string& path) {
  const int count = ::getfsstat(nullptr, 0, MNT_NOWAIT);
  if (count < 0) return true;
  constexpr int kMore = 8;  // mounted in the meantime
  std::vector<struct statfs> volumes(static_cast<std::size_t>(count + kMore));
  const int filled = ::getfsstat(
      volumes.data(), static_cast<int>(volumes.size() * sizeof(struct statfs)), MNT_NOWAIT);
  if (filled < 0) return true;
  for (int i = 0; i < filled; ++i) {
    if (PathText::isAtOrBelow(volumes[static_cast<std::size_t>(i)].f_mntonname, path)) return true;
  }
  return false;
}

bool moveWithoutReplacing(int fromFolder, const std::string& from, int toFolder,
                          const std::string& to) {
  return ::renameatx_np(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_EXCL) == 0;
}

}  // namespace

TrashMove MacTrash::moveToTrash(const std::string& path, const FileIdentity& identity) {
  const auto facts = linklessFacts(path);
  if (!facts) return {.outcome = errno == ENOENT ? TrashOutcome::gone : TrashOutcome::failed};
  if (facts->identity != identity || holdsVolume(path)) return {};
  @autoreleasepool {
    NSURL* const url = [NSURL fileURLWithFileSystemRepresentation:path.c_str()
                                                      isDirectory:facts->kind == FileKind::folder
                                                    relativeToURL:nil];
    NSURL* where = nil;
    if (![NSFileManager.defaultManager trashItemAtURL:url resultingItemURL:&where error:nil]) {
      return {};
    }
    if (where == nil) return {.outcome = TrashOutcome::moved, .trashed = std::nullopt};
    std::string trashed = where.fileSystemRepresentation;
    const auto moved = linklessFacts(trashed);
    if (moved && moved->identity != identity) {
      // What was looked at is not what was moved: somebody was quicker. It goes back.
      moveWithoutReplacing(AT_FDCWD, trashed, AT_FDCWD, path);
      return {};
    }
    return {.outcome = TrashOutcome::moved, .trashed = std::move(trashed)};
  }
}

bool MacTrash::putBack(const std::string& trashed, const std::string& original,
                       const FileIdentity& identity) {
  // The system may forbid to look into the Trash and still let a thing out of it, so only what has
  // come out is looked at. A thing that is known to be gone leaves no folders behind.
  if (!linklessFacts(trashed) && errno == ENOENT) return false;
  const Descriptor folder = openLinklessMade(std::string(PathText::parent(original)));
  const std::string name(PathText::name(original));
  if (!folder.isOpen() || name.empty()) return false;
  if (!moveWithoutReplacing(AT_FDCWD, trashed, folder.number(), name)) return false;
  const auto facts = factsAt(folder.number(), name.c_str());
  if (facts && facts->identity == identity) return true;
  moveWithoutReplacing(folder.number(), name, AT_FDCWD, trashed);
  return false;
}

}  // namespace embrix
