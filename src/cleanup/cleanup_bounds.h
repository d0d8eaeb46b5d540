// Where the cleanup may look and what it may move. A folder of the catalogue counts as what it
// comes to when every link in its path is followed, and only if that is below the home folder: a
// link that leads out of it leads nowhere. Any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cleanup/catalog_places.h"
#include "host/folder_source.h"

namespace embrix {

class CleanupBounds {
 public:
  CleanupBounds(FolderSource& folders, std::string home);

  struct Folder {
    std::string named;  // as the catalogue names it
    std::string real;   // where it is, no link in it
  };

  // Absent when there is nothing there or it leads out of the home folder.
  std::optional<Folder> folder(const CatalogPlace& place) const;

  // The folder's name, whether it is there or not.
  std::string named(const CatalogPlace& place) const;

  // Those of all platforms, by name.
  std::vector<Folder> deviceSupportFolders() const;

  // Whether the path is something that the catalogue clears, whether or not it is still there: one
  // of its folders, or directly in one, whichever the place says.
  bool mayMove(const std::string& url) const;

  const std::string& home() const { return home_; }

 private:
  std::optional<Folder> resolved(std::string named) const;
  std::string expected(const std::string& named) const;
  bool isDeviceSupport(std::string_view folder) const;

  FolderSource& folders_;
  std::string home_;
  std::optional<std::string> realHome_;
  std::optional<BaseFolders> baseFolders_;
};

}  // namespace embrix
