// The program's actions as methods of its object on the bus of the login session: each has its own
// name, takes nothing, and answers with its value, if it has one, and with the sentence to be shown
// or spoken. An action that cannot be done is the error app.embrix.Error.Failed with the reason as
// its text. Without a bus nothing happens.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "host/action_service.h"
#include "hosts/linux/bus_connection.h"

namespace embrix {

class BusActionService final : public ActionService {
 public:
  // `session`: the bus of the login session.
  explicit BusActionService(std::shared_ptr<BusConnection> session);

  void publish(std::vector<PublishedAction> actions) override;

 private:
  void offer(sd_bus* bus);
  static int perform(sd_bus_message* call, void* self, sd_bus_error* error);

  std::shared_ptr<BusConnection> session_;
  std::vector<PublishedAction> actions_;
  std::vector<sd_bus_vtable> members_;  // as the library reads them while the object is offered
  BusSlot object_;
  BusSlot name_;
};

}  // namespace embrix
