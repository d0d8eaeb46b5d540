#include "hosts/linux/desktop_entry.h"

#include "base/text.h"
#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The escapes of a value: "\s" is a blank.
std::string unescaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      text.push_back(value[i]);
      continue;
    }
    const char escaped = value[++i];
    switch (escaped) {
      case 's':
        text.push_back(' ');
        break;
      case 'n':
        text.push_back('\n');
        break;
      case 't':
        text.push_back('\t');
        break;
      case 'r':
        text.push_back('\r');
        break;
      case '\\':
        text.push_back('\\');
        break;
      default:  // escapes of the command line's own quoting
        text.push_back('\\');
        text.push_back(escaped);
    }
  }
  return text;
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text) {
  DesktopEntry entry;
  std::string_view type;
  bool isInGroup = false;
  forEachPiece(text, '\n', [&](std::string_view line) {
    line = trimmed(line);
    if (line.starts_with('[')) {
      isInGroup = line == "[Desktop Entry]";
      return;
    }
    const auto equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos || line.starts_with('#')) return;
    const std::string_view key = trimmed(line.substr(0, equals));
    const std::string_view value = trimmed(line.substr(equals + 1));
    if (key == "Type") {
      type = value;
    } else if (key == "Name") {
      entry.name = Text::repaired(unescaped(value));
    } else if (key == "Icon") {
      entry.icon = unescaped(value);
    } else if (key == "Exec") {
      entry.exec = unescaped(value);
    } else if (key == "TryExec" && !value.empty()) {
      entry.tryExec = unescaped(value);
    } else if (key == "X-Flatpak") {
      entry.flatpakID = value;
    } else if (key == "X-SnapInstanceName") {
      entry.snapInstance = value;
    } else if (key == "NoDisplay") {
      entry.isNoDisplay = value == "true";
    } else if (key == "Hidden") {
      entry.isHidden = value == "true";
    }
  });
  if (!entry.isHidden && (type != "Application" || entry.name.empty())) return std::nullopt;
  return entry;
}

}  // namespace embrix
