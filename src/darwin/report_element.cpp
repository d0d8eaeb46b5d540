#include "darwin/report_element.h"

namespace embrix {

std::optional<std::uint64_t> reportTimestamp(Bytes element) {
  using namespace report_element_layout;
  if (element.size() < kSize) return std::nullopt;
  const auto timestamp = fieldAt<std::uint64_t>(element, kTimestampOffset);
  return timestamp == 0 ? std::nullopt : std::optional(timestamp);
}

}  // namespace embrix
