// The Finder's Trash.
#pragma once

#include "host/trash.h"

namespace embrix {

class MacTrash final : public Trash {
 public:
  TrashMove moveToTrash(const std::string& path, const FileIdentity& identity) override;
  bool putBack(const std::string& trashed, const std::string& original,
               const FileIdentity& identity) override;
};

}  // namespace embrix
