// The program's actions behind a C interface (embrix_actions.h): the system asks for declarations
// in another language, and those call it.
#pragma once

#include <vector>

#include "host/action_service.h"

namespace embrix {

// One at a time: what it publishes is what the C interface offers.
class MacActionService final : public ActionService {
 public:
  ~MacActionService() override;

  void publish(std::vector<PublishedAction> actions) override;
};

}  // namespace embrix
