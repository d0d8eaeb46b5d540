// Paths inside a tree whose root stands for "/". Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embrix {

// The path that the absolute `path` comes to when all links are followed, an absolute link being
// one from the tree's root; both without the root. Absent when there is nothing there, and in a
// circle of links.
std::optional<std::string> resolvedPath(const std::string& root, std::string_view path);

// Whether the resolved path is a regular file that this user may execute.
bool isExecutable(const std::string& root, const std::string& resolved);

}  // namespace embrix
