// A desktop entry file, as the freedesktop.org standard has it. Decodes text; opens nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embrix {

struct DesktopEntry {
  std::string name;  // the untranslated one
  std::string icon;  // a name in the theme of icons, or an absolute path; empty when there is none
  std::string exec;  // empty when the application is started over D-Bus alone
  std::optional<std::string> tryExec;
  std::string flatpakID;     // of an application exported by Flatpak, else empty
  std::string snapInstance;  // of one exported by snapd, else empty
  bool isNoDisplay = false;  // not in menus
  bool isHidden = false;     // counts as deleted, and hides those of its id in later folders

  bool operator==(const DesktopEntry&) const = default;
};

// Absent for what is no entry of an application with a name. One that is hidden needs neither.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

}  // namespace embrix
