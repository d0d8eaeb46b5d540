// The desktop's Trash, as the freedesktop.org Trash standard (version 1.0) lays it out: the
// home folder's for what is on its volume, and for another volume one at that volume's top.
//
// A thing goes there in one rename that never replaces anything, after the file that tells where it
// was is safely written. Where that cannot be done, on a volume without a Trash of the user's or
// one that knows no such rename, it stays.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "host/trash.h"
#include "hosts/linux/linkless_path.h"
#include "hosts/linux/trash_folder.h"

namespace embrix {

struct DesktopTrashOptions {
  std::string dataFolder;  // $XDG_DATA_HOME
  uid_t uid = 0;
  std::function<double()> wallTime;  // seconds since 1970
  std::string mountinfo = "/proc/self/mountinfo";
  // Called when everything has been looked at and the next step moves the thing.
  std::function<void()> beforeMove = [] {};
};

class DesktopTrash final : public Trash {
 public:
  explicit DesktopTrash(DesktopTrashOptions options) : options_(std::move(options)) {}

  TrashMove moveToTrash(const std::string& path, const FileIdentity& identity) override;
  bool putBack(const std::string& trashed, const std::string& original,
               const FileIdentity& identity) override;

 private:
  struct Thing {
    LinklessPlace place;
    std::string path;
    FileIdentity identity;
  };
  enum class Attempt { moved, nameTaken, otherVolume, failed };

  // Absent when the Trash turns out to be on another volume.
  std::optional<TrashMove> moveInto(const TrashFolder& trash, const Thing& thing) const;
  Attempt moveUnder(const std::string& name, const TrashFolder& trash, const Thing& thing) const;

  DesktopTrashOptions options_;
};

}  // namespace embrix
