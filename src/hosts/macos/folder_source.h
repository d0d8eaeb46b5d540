// Folders of a Mac.
#pragma once

#include "host/folder_source.h"

namespace embrix {

class MacFolderSource final : public FolderSource {
 public:
  std::optional<BaseFolders> baseFolders() override { return std::nullopt; }
  std::optional<std::string> resolved(const std::string& path) override;
  bool exists(const std::string& path) override;
  std::optional<FileFacts> facts(const std::string& path) override;
  std::vector<FolderEntry> list(const std::string& folder) override;
  std::optional<std::int64_t> measure(const std::string& folder, MeasureWatch& watch) override;
};

}  // namespace embrix
