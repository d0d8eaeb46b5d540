// Everything that can be seen of a tree, for comparing it with what it was: each thing's kind,
// mode, owner, date of change to the nanosecond, number of names, inode and content, by its path.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include <fmt/format.h>

namespace embrix {

using Manifest = std::map<std::string, std::string>;

inline void addToManifest(const std::filesystem::path& path, const std::string& name,
                          Manifest& manifest) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return;
  std::string content;
  if (S_ISLNK(status.st_mode)) content = std::filesystem::read_symlink(path).string();
  if (S_ISREG(status.st_mode)) {
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::ifstream(path, std::ios::binary).read(bytes.data(), status.st_size);
    content = fmt::format("{} bytes {:x}", bytes.size(), std::hash<std::string>{}(bytes));
  }
  // A folder's size is its file system's affair.
  manifest[name] = fmt::format("{:o} {}:{} {}.{:09} {} {} {}", status.st_mode, status.st_uid,
                               status.st_gid, status.st_mtim.tv_sec, status.st_mtim.tv_nsec,
                               status.st_nlink, status.st_ino, content);
  if (!S_ISDIR(status.st_mode)) return;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    addToManifest(entry.path(), name + "/" + entry.path().filename().string(), manifest);
  }
}

// Of the thing and, if it is a folder, of all below it. Empty when there is nothing.
inline Manifest manifestOf(const std::string& path) {
  Manifest manifest;
  addToManifest(path, ".", manifest);
  return manifest;
}

}  // namespace embrix
