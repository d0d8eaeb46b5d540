#include "frame/process_sample.h"

#include <fmt/format.h>

namespace embrix {

SharedText processID(std::int32_t pid, std::uint64_t startTime) {
  return SharedText(fmt::format("{}-{}", pid, startTime));
}

}  // namespace embrix
