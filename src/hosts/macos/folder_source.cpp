#include "hosts/macos/folder_source.h"

#include <dirent.h>
#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "hosts/macos/linkless_path.h"

namespace embrix {

namespace {

constexpr std::int64_t kBlock = 512;  // bytes, the unit of st_blocks

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
struct CloseTree {
  void operator()(FTS* tree) const { ::fts_close(tree); }
};
struct Free {
  void operator()(char* text) const { std::free(text); }
};

}  // namespace

std::optional<std::string> MacFolderSource::resolved(const std::string& path) {
  const std::unique_ptr<char, Free> real(::realpath(path.c_str(), nullptr));
  if (real == nullptr) return std::nullopt;
  return std::string(real.get());
}

bool MacFolderSource::exists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

std::optional<FileFacts> MacFolderSource::facts(const std::string& path) {
  return linklessFacts(path);
}

std::vector<FolderEntry> MacFolderSource::list(const std::string& folder) {
  std::vector<FolderEntry> entries;
  Descriptor opened = openLinkless(folder);
  const std::unique_ptr<DIR, CloseFolder> stream(opened.isOpen() ? ::fdopendir(opened.number())
                                                                 : nullptr);
  if (stream == nullptr) return entries;
  const int number = opened.release();
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    struct stat status {};
    if (name == "." || name == "..") continue;
    if (::fstatat(number, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
    const FileFacts facts = factsOf(status);
    entries.push_back({.name = std::string(name),
                       .kind = facts.kind,
                       .modified = facts.modified,
                       .hidden = name.starts_with('.') || (status.st_flags & UF_HIDDEN) != 0});
  }
  return entries;
}

std::optional<std::int64_t> MacFolderSource::measure(const std::string& folder,
                                                     MeasureWatch& watch) {
  if (watch.abandoned()) return std::nullopt;
  if (!openLinkless(folder).isOpen()) return 0;
  std::string path = folder;
  char* const roots[] = {path.data(), nullptr};
  const std::unique_ptr<FTS, CloseTree> tree(
      ::fts_open(roots, FTS_PHYSICAL | FTS_XDEV | FTS_NOCHDIR, nullptr));
  if (tree == nullptr) return 0;
  std::set<std::pair<dev_t, ino_t>> manyNamed;
  std::int64_t bytes = 0;
  while (const FTSENT* entry = ::fts_read(tree.get())) {
    if (watch.abandoned()) return std::nullopt;
    if (entry->fts_info != FTS_F || !S_ISREG(entry->fts_statp->st_mode)) continue;
    const struct stat& status = *entry->fts_statp;
    const bool isNew =
        status.st_nlink < 2 || manyNamed.insert({status.st_dev, status.st_ino}).second;
    const std::int64_t own = isNew ? status.st_blocks * kBlock : 0;
    bytes += own;
    watch.add(1, own);
  }
  return bytes;
}

}  // namespace embrix
