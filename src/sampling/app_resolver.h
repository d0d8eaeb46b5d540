// Finds the application that an executable belongs to: the bundle around it, or on a host without
// bundles the installed application whose program it is.
//
// What was found once stands for the life of the program, a miss as well: a bundle is opened and a
// path resolved only once, and an application that changes its name under a running process is not
// worth a look at every tick. Sampling thread only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/hash_map.h"
#include "base/shared_text.h"
#include "frame/app_info.h"
#include "host/application_source.h"

namespace embrix {

class AppResolver {
 public:
  // `source` must outlive the resolver.
  explicit AppResolver(ApplicationSource& source) : source_(&source) {}

  // The application of an executable path, absent for none. Remembered by path; the reference is
  // valid until the next call.
  const std::optional<AppInfo>& byExecutable(const SharedText& path);

  // The same, remembering bundles only. A path with a bundle in it always resolves, to the name of
  // the bundle's folder if the bundle cannot be opened.
  std::optional<AppInfo> resolve(std::string_view path);

 private:
  AppInfo openBundle(std::string_view bundlePath);
  std::optional<AppInfo> installed(std::string_view path);

  ApplicationSource* source_;
  HashMap<SharedText, std::optional<AppInfo>> byExecutable_;
  HashMap<SharedText, AppInfo> byBundle_;
};

}  // namespace embrix
