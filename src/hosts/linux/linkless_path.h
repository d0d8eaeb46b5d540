// Opening what an absolute path names while passing through no symbolic link: a folder that
// somebody replaces by a link, at whatever moment, leads nowhere instead of somewhere else. Every
// function leaves the reason of a failure in errno; ELOOP or ENOTDIR for a link. A path with "." or
// ".." in it fails with EINVAL. Any thread.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/descriptor.h"
#include "host/folder_source.h"

namespace embrix {

// A name in an open folder. The folder is open for naming things in it, not for reading.
struct LinklessPlace {
  Descriptor folder;  // closed when there was an error
  std::string name;   // empty for "/"
};

// Where `path` stands or would stand.
LinklessPlace linklessPlace(const std::string& path);

// The same, and every folder above it that was missing made anew.
LinklessPlace linklessPlaceMade(const std::string& path);

// The folder at the path, open for reading its entries.
Descriptor openLinkless(const std::string& path);

// What stands under that name, a link as itself. Kind, dates and identity.
std::optional<FileFacts> factsAt(int folder, const char* name);

// Seconds since 1970.
double secondsOf(const struct statx_timestamp& time);
FileKind kindOf(unsigned mode);

}  // namespace embrix
