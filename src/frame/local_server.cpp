#include "frame/local_server.h"

#include <fmt/format.h>

namespace embrix {

std::optional<std::string> LocalServer::url() const {
  if (ports.empty()) return std::nullopt;
  return fmt::format("http://localhost:{}", ports.front());
}

}  // namespace embrix
