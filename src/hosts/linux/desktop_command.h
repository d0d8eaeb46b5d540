// The command line of a desktop entry, as the freedesktop.org standard quotes it. Decodes
// text; starts nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embrix {

// What a command line starts in the end.
struct DesktopCommand {
  std::string program;    // a path or a bare name; empty where flatpakID says it all
  int argumentCount = 0;  // its arguments, placeholders for files and the like not counted
  std::string flatpakID;  // of "flatpak run ..."

  bool operator==(const DesktopCommand&) const = default;
};

// Sees through "env A=b", "sh -c '...'" of one plain command, "nice", "pkexec" and their kin.
// Absent for an empty line, a broken one, a script of more than one command, and for interpreters
// and launchers of everything (isInterpreter).
std::optional<DesktopCommand> parseExec(std::string_view exec);

// True for programs that run other people's programs: "python3.11", "node", "sh", "java",
// "electron28", "xdg-open". That one of them runs says nothing of an application. `program` is a
// path or a bare name.
bool isInterpreter(std::string_view program);

}  // namespace embrix
