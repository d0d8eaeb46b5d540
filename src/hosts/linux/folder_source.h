// Folders of a Linux machine.
#pragma once

#include "host/folder_source.h"

namespace embrix {

class LinuxFolderSource final : public FolderSource {
 public:
  explicit LinuxFolderSource(BaseFolders baseFolders) : baseFolders_(std::move(baseFolders)) {}

  std::optional<BaseFolders> baseFolders() override { return baseFolders_; }
  std::optional<std::string> resolved(const std::string& path) override;
  bool exists(const std::string& path) override;
  std::optional<FileFacts> facts(const std::string& path) override;
  std::vector<FolderEntry> list(const std::string& folder) override;
  std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) override;

 private:
  BaseFolders baseFolders_;
};

// From $XDG_CACHE_HOME and $XDG_DATA_HOME (null when unset). As the rules have it, a variable that
// is empty or no absolute path counts as unset: ".cache" and ".local/share" in the home folder.
BaseFolders baseFolders(const std::string& home, const char* cacheVariable,
                        const char* dataVariable);

}  // namespace embrix
