// Icons of applications by their desktop entries. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "host/application_icons.h"

namespace embrix {

class LinuxApplicationIcons final : public ApplicationIcons {
 public:
  explicit LinuxApplicationIcons(std::string root) : root_(std::move(root)) {}

  // The path is a desktop entry's.
  std::optional<ApplicationIcon> iconOf(const std::string& bundlePath) override;

 private:
  std::string root_;
};

}  // namespace embrix
