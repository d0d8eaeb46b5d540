// What the user is told before something is stopped: the body of the question, without its title
// and buttons. Plain functions; any thread.
#pragma once

#include <string>
#include <vector>

#include "frame/local_server.h"
#include "running/forgotten_row.h"

namespace embrix {

struct StopMessage {
  static std::string forgotten(const ForgottenRow& row);
  static std::string all(const std::vector<ForgottenRow>& rows);
  static std::string server(const LocalServer& server);
};

}  // namespace embrix
