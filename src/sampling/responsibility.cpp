#include "sampling/responsibility.h"

namespace embrix {

std::optional<std::int32_t> Responsibility::lookup(std::int32_t pid) const {
  const std::optional<std::int32_t> responsible = source_->responsiblePID(pid);
  if (!responsible || *responsible < 1) return std::nullopt;
  return responsible;
}

}  // namespace embrix
