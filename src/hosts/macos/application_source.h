// Bundles, and the applications that the system knows of. One thread at a time.
#pragma once

#include <optional>
#include <string>

#include "host/application_source.h"

namespace embrix {

class MacApplicationSource final : public ApplicationSource {
 public:
  std::optional<ApplicationBundle> bundle(const std::string& bundlePath) override;
  std::optional<InstalledApplication> byExecutable(const std::string&) override {
    return std::nullopt;
  }
  std::optional<std::string> pathForIdentifier(const std::string& identifier) override;
};

}  // namespace embrix
