#pragma once

#include "host/log.h"

namespace embrix {

// The unified log.
class MacLog final : public Log {
 public:
  void error(std::string_view category, std::string_view text) override;
};

}  // namespace embrix
