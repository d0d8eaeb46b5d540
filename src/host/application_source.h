// Installed applications. Each call comes from one thread at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embrix {

// What an application says of itself. Absent texts are missing there, or are no texts.
struct ApplicationBundle {
  std::optional<std::string> displayName;
  std::optional<std::string> name;
  std::optional<std::string> identifier;

  bool operator==(const ApplicationBundle&) const = default;
};

// An application known by an executable of its own instead of a bundle around it.
struct InstalledApplication {
  std::string name;
  std::string identifier;
  std::string path;  // what stands for the application on disk

  bool operator==(const InstalledApplication&) const = default;
};

class ApplicationSource {
 public:
  virtual ~ApplicationSource() = default;

  // Opens the bundle folder; absent when there is none there.
  virtual std::optional<ApplicationBundle> bundle(const std::string& bundlePath) = 0;

  // For hosts without bundles: the application whose program this executable is. Absent on macOS.
  virtual std::optional<InstalledApplication> byExecutable(const std::string& executablePath) = 0;

  // Path of the application with that identifier, absent when none is installed.
  virtual std::optional<std::string> pathForIdentifier(const std::string& identifier) = 0;
};

}  // namespace embrix
