// Files read and written in one piece.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// The bytes of a regular file, links followed. Absent when there is none, when it cannot be read,
// when it is no regular file, and when it holds more than `limit` bytes.
std::optional<std::string> readWholeFile(const std::string& path, std::size_t limit);

// Replaces the file at `path`, or makes it, so that whoever opens it and whoever starts after a
// power cut finds either all of the old bytes or all of the new ones. The file is readable and
// writable by its owner alone. A symbolic link at `path` is itself replaced; what it points to
// stays untouched. False when any step failed: then the old file stands and nothing is left beside
// it. The folder must exist.
bool writeFileAtomically(const std::string& path, std::string_view bytes);

// Likewise with the pieces one behind the other.
bool writeFileAtomically(const std::string& path, std::span<const std::string_view> pieces);

// Likewise without waiting for the disk: after a power cut the file can also be empty. For what is
// made anew all the time.
bool writeFileUnflushed(const std::string& path, std::string_view bytes);

struct NewFile {
  std::string path;
  std::vector<std::string_view> pieces;  // one behind the other
};

// Likewise for several files, which cost the disk little more than one. All paths are in that
// folder: others would not outlast a power cut. Each file stands for itself: one that cannot be
// replaced keeps none of the others from it, also where room or descriptors are too few for all at
// once. False when any failed.
bool writeFilesAtomically(const std::string& folder, std::span<const NewFile> files);

// Removes what such a write left beside that path in runs that were killed half-way. A write
// to the path that is under way in another process then fails.
void removeHalfWritten(const std::string& path);

}  // namespace embrix
