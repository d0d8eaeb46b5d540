// The kernel's process table and the counters of each process: one call for the table, one for each
// process. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/process_source.h"

namespace embrix {

class MacProcessSource final : public ProcessSource {
 public:
  MacProcessSource();

  double ticksToNS() override { return ticksToNS_; }
  void read(std::vector<RawProcess>& table) override;
  std::optional<std::string> executablePath(std::int32_t pid) override;

 private:
  double ticksToNS_;
  std::vector<std::uint8_t> buffer_;  // kept from tick to tick
};

}  // namespace embrix
