// The user's Trash. Nothing is ever deleted or overwritten, and nothing is copied: a thing goes to
// the Trash of its own volume by a change of name, or it stays where it is.
//
// No path may lead through a symbolic link. Any thread; calls may overlap.
#pragma once

#include <optional>
#include <string>

#include "host/folder_source.h"

namespace embrix {

enum class TrashOutcome {
  moved,
  gone,    // nothing stood at the path
  failed,  // it stands there as before, or another thing does
};

struct TrashMove {
  TrashOutcome outcome = TrashOutcome::failed;
  // Where it is now. Absent unless it was moved, and when the system does not say.
  std::optional<std::string> trashed;

  bool operator==(const TrashMove&) const = default;
};

class Trash {
 public:
  virtual ~Trash() = default;

  // Moves the file or folder at the path, if it is the very one with that identity. Fails for a
  // volume's own folder and for a folder in which another volume is mounted: emptying the Trash
  // would empty that volume.
  virtual TrashMove moveToTrash(const std::string& path, const FileIdentity& identity) = 0;

  // Moves what moveToTrash put at `trashed` back to where it was, making the folders above it that
  // are missing. False when it is no longer there, another thing being there included, and when
  // something stands at `original`: then everything stays as it is.
  virtual bool putBack(const std::string& trashed, const std::string& original,
                       const FileIdentity& identity) = 0;
};

}  // namespace embrix
