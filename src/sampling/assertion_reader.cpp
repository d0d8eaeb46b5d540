#include "sampling/assertion_reader.h"

#include <cmath>
#include <optional>

#include <fmt/format.h>

namespace embrix {

std::vector<PowerAssertion> AssertionReader::read() {
  std::vector<PowerAssertion> assertions;
  for (const ProcessAssertions& process : source_.read()) {
    for (const PropertyMap& properties : process.assertions) {
      auto started = dateAt(properties, "AssertStartWhen");
      const bool isDate = started && std::isfinite(*started) && *started >= 0;
      if (!isDate) started.reset();
      auto processName = textAt(properties, "Process Name");
      if (!processName) processName = fmt::format("pid {}", process.pid);
      assertions.push_back({.pid = process.pid,
                            .processName = *std::move(processName),
                            .type = textAt(properties, "AssertType").value_or(""),
                            .name = textAt(properties, "AssertName").value_or(""),
                            .started = started});
    }
  }
  return assertions;
}

}  // namespace embrix
