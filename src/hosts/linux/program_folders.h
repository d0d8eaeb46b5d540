// Where programs lie on a Linux system: which folder is one application's own, and where the
// program behind a starting script is to be found. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// The folder that belongs to the application of this program, links resolved: "/opt/google/chrome"
// of
// "/opt/google/chrome/google-chrome", "/usr/share/code" of "/usr/share/code/bin/code". Absent for a
// program in a folder that it shares with others, such as /usr/bin.
std::optional<std::string> ownFolder(const std::string& program, const std::string& home);

// The folders, outside the shared ones, that carry the program's name and hold a program of it:
// "/usr/lib/firefox" of "firefox", when there is an executable "firefox", "firefox-bin" or
// "firefox.bin" in it.
std::vector<std::string> foldersNamedFor(const std::string& root, std::string_view program);

// Whether the file is a script, which never is a process's executable itself.
bool isScript(const std::string& root, const std::string& resolved);

}  // namespace embrix
