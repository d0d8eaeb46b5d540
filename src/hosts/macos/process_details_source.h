// Arguments, working directories and listening sockets, each asked of the kernel for one process.
// Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/process_details_source.h"

namespace embrix {

class MacProcessDetailsSource final : public ProcessDetailsSource {
 public:
  std::vector<std::string> arguments(std::int32_t pid) override;
  std::optional<std::string> directory(std::int32_t pid) override;
  std::vector<ListeningPort> listening(std::int32_t pid) override;
};

}  // namespace embrix
