// Opening what an absolute path names while passing through no symbolic link. Every function leaves
// the reason of a failure in errno. Any thread.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/descriptor.h"
#include "host/folder_source.h"

namespace embrix {

// The folder at the path, for reading it and for naming things in it.
Descriptor openLinkless(const std::string& folder);

// The same, and what is missing of it made anew.
Descriptor openLinklessMade(const std::string& folder);

// What stands at the path, a link as itself.
std::optional<FileFacts> linklessFacts(const std::string& path);

// What stands in an open folder under that name.
std::optional<FileFacts> factsAt(int folder, const char* name);

FileFacts factsOf(const struct stat& status);

}  // namespace embrix
