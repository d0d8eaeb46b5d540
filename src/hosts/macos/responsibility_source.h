// Which process the system holds responsible for another, by a private function. Sampling thread
// only.
#pragma once

#include <sys/types.h>

#include "host/responsibility_source.h"

namespace embrix {

class MacResponsibilitySource final : public ResponsibilitySource {
 public:
  MacResponsibilitySource();

  // Absent where the system has no such function.
  std::optional<std::int32_t> responsiblePID(std::int32_t pid) override;

 private:
  pid_t (*lookUp_)(pid_t);
};

}  // namespace embrix
