#pragma once

#include "host/log.h"

namespace embrix {

// The journal where there is one, standard error elsewhere.
class LinuxLog final : public Log {
 public:
  void error(std::string_view category, std::string_view text) override;
};

}  // namespace embrix
