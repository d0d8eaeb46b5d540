// Any bytes as the kernel's answers about sockets: a message, and the tables that serve where no
// message comes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hosts/linux/socket_diagnosis.h"

namespace {

void check(const embrix::ListeningSocket& socket) {
  if (socket.port < 1 || socket.port > 65535) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (const auto socket = embrix::parseDiagnosis({data, size})) check(*socket);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const embrix::ListeningSocket& socket : embrix::parseSocketTable(text)) check(socket);
  if (embrix::isLoopbackAddress({data, size}) && size != 4 && size != 16) std::abort();
  return 0;
}
