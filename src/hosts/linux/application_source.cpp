#include "hosts/linux/application_source.h"

#include <utility>

namespace embrix {

LinuxApplicationSource::LinuxApplicationSource(std::string root, DesktopEnvironment environment)
    : root_(std::move(root)), environment_(std::move(environment)) {}

const ApplicationIndex& LinuxApplicationSource::index() {
  if (!index_) index_.emplace(root_, environment_);
  return *index_;
}

std::optional<ApplicationBundle> LinuxApplicationSource::bundle(const std::string&) {
  return std::nullopt;
}

std::optional<InstalledApplication> LinuxApplicationSource::byExecutable(
    const std::string& executablePath) {
  const InstalledApplication* const application = index().byExecutable(executablePath);
  return application == nullptr ? std::nullopt : std::optional(*application);
}

std::optional<std::string> LinuxApplicationSource::pathForIdentifier(
    const std::string& identifier) {
  const InstalledApplication* const application = index().byIdentifier(identifier);
  return application == nullptr ? std::nullopt : std::optional(application->path);
}

}  // namespace embrix
