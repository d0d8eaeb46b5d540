// What the cleanup knows about the names and files of developer tools. Pure functions over text and
// bytes, which may be anything; any thread. Dates are seconds since 1970.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace embrix {

struct CleanupCatalog {
  struct DerivedDataInfo {
    std::string workspace;  // an absolute path, any bytes
    std::optional<double> lastAccessed;

    bool operator==(const DerivedDataInfo&) const = default;
  };

  // The name of a device-support folder, such as "iPhone15,2 17.4.1 (21E236)" in
  // "iOS DeviceSupport", taken apart.
  struct DeviceSupportFolder {
    std::string platform;              // "iOS"
    std::optional<std::string> model;  // "iPhone15,2"
    std::string version;               // "17.4.1"
    std::optional<std::string> build;  // "21E236"

    bool operator==(const DeviceSupportFolder&) const = default;
  };

  struct UnavailableSimulator {
    std::string udid;
    std::string name;     // "iPhone 15"
    std::string runtime;  // "iOS 17.5"

    bool operator==(const UnavailableSimulator&) const = default;
  };

  // What the "info.plist" of a build folder says. Absent unless it names a workspace by an absolute
  // path.
  static std::optional<DerivedDataInfo> derivedDataInfo(std::string_view data);

  // What a person calls the project: "Tidepool", and "App (recipe-box)" for a workspace whose name
  // says nothing, after the first folder above it whose name does.
  static std::string projectName(std::string_view workspace);

  // The folder that a path is in, "~" standing for the home folder: "~/src" for
  // "/Users/me/src/app". Who means a folder itself passes something in it.
  static std::string shortPath(std::string_view path, std::string_view home);

  // What Xcode's shared build folders are for: "Module cache" for "ModuleCache.noindex".
  static std::string sharedCacheName(std::string_view name);

  // Absent when the folder's name has no version.
  static std::optional<DeviceSupportFolder> deviceSupport(std::string_view folder,
                                                          std::string_view platformFolder);

  // By path, for each folder of a device that has moved on to a newer version, what it moved to.
  static std::map<std::string, std::string> supersededDeviceSupport(
      const std::vector<std::pair<std::string, DeviceSupportFolder>>& folders);

  // "iOS 17.4" for "com.apple.CoreSimulator.SimRuntime.iOS-17-4"; the last piece as it stands when
  // it has no version. Absent when there is no piece at all.
  static std::optional<std::string> runtimeName(std::string_view identifier);

  // Whether the text is the udid of one simulator, and nothing else.
  static bool isDeviceIdentifier(const std::string& text);

  // The devices that the simulator tool calls unavailable, by ascending udid. Empty for what is not
  // its JSON.
  static std::vector<UnavailableSimulator> unavailableSimulators(std::string_view json);
};

}  // namespace embrix
