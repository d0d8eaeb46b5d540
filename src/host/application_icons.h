// How the desktop shows applications: by which icon. Main thread only.
#pragma once

#include <optional>
#include <string>

namespace embrix {

// Where the picture of an application is to be had.
struct ApplicationIcon {
  enum class Kind {
    named,     // in the desktop's theme of icons, under the name `text`
    picture,   // in the file with the absolute path `text`
    ofBundle,  // of the desktop itself, which is asked for the icon of what lies at the path `text`
  };

  Kind kind = Kind::named;
  std::string text;

  bool operator==(const ApplicationIcon&) const = default;
};

class ApplicationIcons {
 public:
  virtual ~ApplicationIcons() = default;

  // Of the application that this path stands for on the host, as AppInfo::bundlePath has it. Absent
  // for what is no application, and for one that names no icon.
  virtual std::optional<ApplicationIcon> iconOf(const std::string& bundlePath) = 0;
};

}  // namespace embrix
