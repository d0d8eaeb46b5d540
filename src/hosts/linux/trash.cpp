#include "hosts/linux/trash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <fmt/format.h>

#include "base/path_text.h"
#include "hosts/linux/mount_table.h"
#include "hosts/linux/system_file.h"
#include "hosts/linux/trash_info.h"

namespace embrix {

namespace {

constexpr std::string_view kInfoEnding = ".trashinfo";
constexpr int kMostNames = 1000;                          // tried for one thing
constexpr std::size_t kMostMountinfo = 16 * 1024 * 1024;  // bytes

// The name that a thing has in the Trash at the `attempt`th try, the first being 0: its own, then
// with a number. Long ones are cut, between characters, so that there is room for all endings.
std::string trashName(const std::string& name, int attempt) {
  constexpr std::size_t kLongest = 255 - kInfoEnding.size() - 5;
  std::size_t length = std::min(name.size(), kLongest);
  const auto isInsideCharacter = [&] {
    return length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80;
  };
  // A character has four bytes at most; what is none is cut anywhere.
  for (int i = 0; i < 3 && isInsideCharacter(); ++i) length -= 1;
  const std::string stem = name.substr(0, length);
  return attempt == 0 ? stem : fmt::format("{}.{}", stem, attempt + 1);
}

bool writeAll(const Descriptor& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file.number(), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return ::fsync(file.number()) == 0;
}

struct Name {
  int folder = -1;
  std::string name;
};

bool isAt(const Name& place, const FileIdentity& identity) {
  const auto facts = factsAt(place.folder, place.name.c_str());
  return facts && facts->identity == identity;
}

bool renameWithoutReplacing(const Name& from, const Name& to) {
  return ::renameat2(from.folder, from.name.c_str(), to.folder, to.name.c_str(),
                     RENAME_NOREPLACE) == 0;
}

enum class Moved { yes, placeTaken, otherVolume, no, wrongThing };

Moved move(const Name& from, const Name& to, const FileIdentity& identity) {
  if (!renameWithoutReplacing(from, to)) {
    if (errno == EEXIST) return Moved::placeTaken;
    return errno == EXDEV ? Moved::otherVolume : Moved::no;
  }
  if (isAt(to, identity)) return Moved::yes;
  // What was looked at is not what was moved: somebody was quicker. It goes back, unless its place
  // was taken again meanwhile: then it stays.
  return renameWithoutReplacing(to, from) ? Moved::no : Moved::wrongThing;
}

std::uint64_t deviceOf(const Descriptor& folder) {
  struct stat status {};
  return ::fstat(folder.number(), &status) == 0 ? status.st_dev : 0;
}

}  // namespace

TrashMove DesktopTrash::moveToTrash(const std::string& path, const FileIdentity& identity) {
  const Thing thing{.place = linklessPlace(path), .path = path, .identity = identity};
  if (thing.place.name.empty()) return {};
  const bool isThere = thing.place.folder.isOpen() &&
                       factsAt(thing.place.folder.number(), thing.place.name.c_str()).has_value();
  if (!isThere) return {.outcome = errno == ENOENT ? TrashOutcome::gone : TrashOutcome::failed};
  if (!isAt({thing.place.folder.number(), thing.place.name}, identity)) return {};

  const auto mountinfo = readSystemFile(options_.mountinfo, kMostMountinfo);
  if (!mountinfo) return {};
  const MountTable mounts(*mountinfo);
  if (mounts.holdsVolume(path)) return {};

  const auto home = openHomeTrash(options_.dataFolder);
  if (home && deviceOf(home->files) == identity.device) {
    if (const auto moved = moveInto(*home, thing)) return *moved;
  }
  const auto volume = mounts.volumeFolder(path);
  const auto trash = volume ? openVolumeTrash(*volume, options_.uid) : std::nullopt;
  return trash ? moveInto(*trash, thing).value_or(TrashMove{}) : TrashMove{};
}

std::optional<TrashMove> DesktopTrash::moveInto(const TrashFolder& trash,
                                                const Thing& thing) const {
  for (int attempt = 0; attempt < kMostNames; ++attempt) {
    const std::string name = trashName(thing.place.name, attempt);
    switch (moveUnder(name, trash, thing)) {
      case Attempt::moved:
        return TrashMove{.outcome = TrashOutcome::moved,
                         .trashed = fmt::format("{}/files/{}", trash.path, name)};
      case Attempt::otherVolume:
        return std::nullopt;
      case Attempt::failed:
        return TrashMove{};
      case Attempt::nameTaken:
        break;
    }
  }
  return TrashMove{};
}

DesktopTrash::Attempt DesktopTrash::moveUnder(const std::string& name, const TrashFolder& trash,
                                              const Thing& thing) const {
  const std::string infoName = name + std::string(kInfoEnding);
  constexpr int kNewFile = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const Descriptor info(::openat(trash.info.number(), infoName.c_str(), kNewFile, 0600));
  if (!info.isOpen()) return errno == EEXIST ? Attempt::nameTaken : Attempt::failed;
  const auto withoutInfo = [&](Attempt attempt) {
    ::unlinkat(trash.info.number(), infoName.c_str(), 0);
    return attempt;
  };

  const TrashInfo text{.path = thing.path.substr(trash.volume.size()),
                       .deleted = options_.wallTime()};
  if (!writeAll(info, text.text())) return withoutInfo(Attempt::failed);

  options_.beforeMove();
  switch (move({thing.place.folder.number(), thing.place.name}, {trash.files.number(), name},
               thing.identity)) {
    case Moved::yes:
      return Attempt::moved;
    case Moved::placeTaken:
      return withoutInfo(Attempt::nameTaken);
    case Moved::otherVolume:
      return withoutInfo(Attempt::otherVolume);
    case Moved::no:
      return withoutInfo(Attempt::failed);
    case Moved::wrongThing:
      break;  // in the Trash, with all that belongs to it
  }
  return Attempt::failed;
}

bool DesktopTrash::putBack(const std::string& trashed, const std::string& original,
                           const FileIdentity& identity) {
  const LinklessPlace from = linklessPlace(trashed);
  if (!from.folder.isOpen() || !isAt({from.folder.number(), from.name}, identity)) return false;
  const LinklessPlace to = linklessPlaceMade(original);
  if (!to.folder.isOpen() || to.name.empty()) return false;
  options_.beforeMove();
  if (move({from.folder.number(), from.name}, {to.folder.number(), to.name}, identity) !=
      Moved::yes) {
    return false;
  }
  const LinklessPlace info = linklessPlace(fmt::format(
      "{}/info/{}{}", PathText::parent(PathText::parent(trashed)), from.name, kInfoEnding));
  if (info.folder.isOpen()) ::unlinkat(info.folder.number(), info.name.c_str(), 0);
  return true;
}

}  // namespace embrix
