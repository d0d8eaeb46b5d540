// A small disk held in plain data, with a Trash on it. Paths are absolute; making a thing makes the
// folders above it. One thread at a time. It must outlive whoever was given it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/file_source.h"
#include "host/folder_source.h"
#include "host/trash.h"

namespace embrix {

class FolderWorld final : public FolderSource, public FileSource, public Trash {
 public:
  struct Node {
    FileKind kind = FileKind::folder;
    double modified = 0;     // seconds since 1970
    std::int64_t bytes = 0;  // on the disk
    std::string content;     // of a file; where a link leads
    std::uint64_t inode = 0;

    bool operator==(const Node&) const = default;
  };

  static constexpr std::string_view kTrash = "/Trash/";

  void folder(const std::string& path, double modified = 0);
  void file(const std::string& path, std::int64_t bytes, double modified = 0,
            std::string content = {});
  void link(const std::string& path, std::string target);
  void remove(const std::string& path);
  // Another thing under the same name: everything below is gone.
  void replaceByFolder(const std::string& path);
  bool has(const std::string& path) const { return nodes.count(path) > 0; }

  std::map<std::string, Node> nodes;
  std::optional<BaseFolders> base;   // as on macOS while absent
  std::set<std::string> unreadable;  // paths that nobody may look at or below
  std::set<std::string> unmovable;   // paths for which the Trash fails
  bool trashSaysWhere = true;
  std::function<void(const std::string&)> onMeasure;  // called before each measurement
  std::function<void(const std::string&)> onMove;     // called before each move to the Trash
  std::vector<std::string> log;                       // "measure /x", "trash /x", "putBack /x"

  std::optional<BaseFolders> baseFolders() override { return base; }
  std::optional<std::string> resolved(const std::string& path) override;
  bool exists(const std::string& path) override { return resolved(path).has_value(); }
  std::optional<FileFacts> facts(const std::string& path) override;
  std::vector<FolderEntry> list(const std::string& folder) override;
  std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) override;
  std::optional<std::string> read(const std::string& path) override;
  TrashMove moveToTrash(const std::string& path, const FileIdentity& identity) override;
  bool putBack(const std::string& trashed, const std::string& original,
               const FileIdentity& identity) override;

 private:
  void makeParents(const std::string& path);
  bool isReadable(std::string_view path) const;
  const Node* find(const std::string& path) const;
  void move(const std::string& from, const std::string& to);

  std::uint64_t nextInode_ = 1;
  int trashed_ = 0;
};

}  // namespace embrix
