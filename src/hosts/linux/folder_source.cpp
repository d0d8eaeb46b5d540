#include "hosts/linux/folder_source.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string_view>

#include "hosts/linux/linkless_path.h"
#include "hosts/linux/tree_measure.h"

namespace embrix {

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

struct Free {
  void operator()(char* text) const { std::free(text); }
};

std::string baseFolder(const std::string& home, const char* variable, std::string_view usual) {
  std::string folder = variable == nullptr ? "" : variable;
  if (!folder.starts_with('/')) folder = home + "/" + std::string(usual);
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

}  // namespace

std::optional<std::string> LinuxFolderSource::resolved(const std::string& path) {
  const std::unique_ptr<char, Free> real(::realpath(path.c_str(), nullptr));
  if (real == nullptr) return std::nullopt;
  return std::string(real.get());
}

bool LinuxFolderSource::exists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

std::optional<FileFacts> LinuxFolderSource::facts(const std::string& path) {
  const LinklessPlace place = linklessPlace(path);
  if (!place.folder.isOpen()) return std::nullopt;
  return factsAt(place.folder.number(), place.name.empty() ? "." : place.name.c_str());
}

std::vector<FolderEntry> LinuxFolderSource::list(const std::string& folder) {
  std::vector<FolderEntry> entries;
  Descriptor opened = openLinkless(folder);
  if (!opened.isOpen()) return entries;
  const std::unique_ptr<DIR, CloseFolder> stream(::fdopendir(opened.number()));
  if (stream == nullptr) return entries;
  const int number = opened.release();
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const auto facts = factsAt(number, entry->d_name);
    if (!facts) continue;
    entries.push_back({.name = std::string(name),
                       .kind = facts->kind,
                       .modified = facts->modified,
                       .hidden = name.starts_with('.')});
  }
  return entries;
}

std::optional<std::int64_t> LinuxFolderSource::measure(const std::string& folder,
                                                       MeasureWatch& watch) {
  return measureTree(openLinkless(folder), watch);
}

BaseFolders baseFolders(const std::string& home, const char* cacheVariable,
                        const char* dataVariable) {
  return {.cache = baseFolder(home, cacheVariable, ".cache"),
          .data = baseFolder(home, dataVariable, ".local/share")};
}

}  // namespace embrix
