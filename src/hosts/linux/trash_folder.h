// A folder that the freedesktop.org Trash standard (version 1.0) makes a Trash: what was
// thrown away in "files", and in "info" a file for each that tells where it was. Any thread.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "base/descriptor.h"

namespace embrix {

struct TrashFolder {
  std::string path;  // without a link in it
  // The folder of the volume that the Trash is for, which paths in it begin from. Empty for the
  // home folder's, where paths are absolute.
  std::string volume;
  Descriptor files;
  Descriptor info;
};

// "Trash" in the folder of the user's data, made if it is missing. Absent when that cannot be.
std::optional<TrashFolder> openHomeTrash(const std::string& dataFolder);

// The user's Trash at the top of a volume: ".Trash/<uid>" where an administrator has made a shared
// ".Trash" that is fit for it (a real folder, sticky), else ".Trash-<uid>". Made if it is missing.
// Absent when it cannot be made, is a link or belongs to somebody else.
std::optional<TrashFolder> openVolumeTrash(const std::string& volumeFolder, uid_t uid);

}  // namespace embrix
