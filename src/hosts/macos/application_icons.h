// Icons of applications: the desktop knows them by the bundle. Main thread only.
#pragma once

#include <optional>
#include <string>

#include "host/application_icons.h"

namespace embrix {

class MacApplicationIcons final : public ApplicationIcons {
 public:
  std::optional<ApplicationIcon> iconOf(const std::string& bundlePath) override;
};

}  // namespace embrix
