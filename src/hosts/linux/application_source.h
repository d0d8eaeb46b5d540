#pragma once

#include <optional>
#include <string>

#include "host/application_source.h"
#include "hosts/linux/application_index.h"

namespace embrix {

// Applications by their desktop entries, read at the first question. One thread at a time.
class LinuxApplicationSource final : public ApplicationSource {
 public:
  LinuxApplicationSource(std::string root, DesktopEnvironment environment);

  // There are no bundles here.
  std::optional<ApplicationBundle> bundle(const std::string& bundlePath) override;

  // The path is the desktop entry's, the identifier its name without ".desktop".
  std::optional<InstalledApplication> byExecutable(const std::string& executablePath) override;
  std::optional<std::string> pathForIdentifier(const std::string& identifier) override;

 private:
  const ApplicationIndex& index();

  std::string root_;
  DesktopEnvironment environment_;
  std::optional<ApplicationIndex> index_;
};

}  // namespace embrix
