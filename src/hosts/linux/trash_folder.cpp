#include "hosts/linux/trash_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include <fmt/format.h>

#include "hosts/linux/linkless_path.h"

namespace embrix {

namespace {

constexpr mode_t kOwnerOnly = 0700;

Descriptor openFolderIn(const Descriptor& parent, const char* name) {
  return Descriptor(
      ::openat(parent.number(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

Descriptor folderMadeIn(const Descriptor& parent, const char* name) {
  if (::mkdirat(parent.number(), name, kOwnerOnly) != 0 && errno != EEXIST) return {};
  return openFolderIn(parent, name);
}

bool belongsTo(const Descriptor& folder, uid_t uid) {
  struct stat status {};
  return ::fstat(folder.number(), &status) == 0 && status.st_uid == uid;
}

bool isSticky(const Descriptor& folder) {
  struct stat status {};
  return ::fstat(folder.number(), &status) == 0 && (status.st_mode & S_ISVTX) != 0;
}

std::optional<TrashFolder> withParts(const Descriptor& trash, std::string path,
                                     std::string volume) {
  TrashFolder opened{.path = std::move(path),
                     .volume = std::move(volume),
                     .files = folderMadeIn(trash, "files"),
                     .info = folderMadeIn(trash, "info")};
  if (!opened.files.isOpen() || !opened.info.isOpen()) return std::nullopt;
  return opened;
}

std::optional<TrashFolder> ownTrashIn(const Descriptor& parent, const std::string& parentPath,
                                      const std::string& name, const std::string& volume,
                                      uid_t uid) {
  const Descriptor trash = folderMadeIn(parent, name.c_str());
  if (!trash.isOpen() || !belongsTo(trash, uid)) return std::nullopt;
  return withParts(trash, fmt::format("{}/{}", parentPath, name), volume);
}

// Makes the folder and those above it, for the owner alone.
void makeFolders(const std::string& path) {
  for (std::size_t end = path.find('/', 1); end != std::string::npos;
       end = path.find('/', end + 1)) {
    ::mkdir(path.substr(0, end).c_str(), kOwnerOnly);
  }
  ::mkdir(path.c_str(), kOwnerOnly);
}

struct Free {
  void operator()(char* text) const { std::free(text); }
};

}  // namespace

std::optional<TrashFolder> openHomeTrash(const std::string& dataFolder) {
  const std::string named = dataFolder + "/Trash";
  makeFolders(named);
  // The user may have put the Trash or the folder that it is in elsewhere.
  const std::unique_ptr<char, Free> real(::realpath(named.c_str(), nullptr));
  if (real == nullptr) return std::nullopt;
  const Descriptor trash = openLinkless(real.get());
  if (!trash.isOpen()) return std::nullopt;
  return withParts(trash, real.get(), "");
}

std::optional<TrashFolder> openVolumeTrash(const std::string& volumeFolder, uid_t uid) {
  const Descriptor top = openLinkless(volumeFolder);
  if (!top.isOpen()) return std::nullopt;
  const std::string topPath = volumeFolder == "/" ? "" : volumeFolder;
  const Descriptor shared = openFolderIn(top, ".Trash");
  if (shared.isOpen() && isSticky(shared)) {
    auto own = ownTrashIn(shared, topPath + "/.Trash", fmt::format("{}", uid), topPath + "/", uid);
    if (own) return own;
  }
  return ownTrashIn(top, topPath, fmt::format(".Trash-{}", uid), topPath + "/", uid);
}

}  // namespace embrix
