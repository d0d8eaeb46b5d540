// Finds the application bundle whose icon stands for a group. Main thread only, and the source it
// is given must not be one that the sampling thread uses.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/hash_map.h"
#include "host/application_source.h"

namespace embrix {

class AppIcon {
 public:
  // Whether something stands at a path.
  using Exists = std::function<bool(const std::string& path)>;

  // `source` must outlive this.
  AppIcon(ApplicationSource& source, Exists exists)
      : source_(&source), exists_(std::move(exists)) {}

  // Path of the bundle: the one that the group's executable lies in, else the installed application
  // that is known to go with the group's name. Absent when there is none. Every answer is
  // remembered for the life of the program, absence too.
  std::optional<std::string> appPath(std::string_view name,
                                     const std::optional<std::string_view>& path);

 private:
  std::optional<std::string> find(std::string_view name,
                                  const std::optional<std::string_view>& path);
  std::optional<std::string> simulatorInsideXcode();

  ApplicationSource* source_;
  Exists exists_;
  HashMap<std::string, std::optional<std::string>> known_;
};

}  // namespace embrix
