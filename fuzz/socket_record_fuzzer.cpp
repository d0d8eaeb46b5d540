// Any bytes as the kernel's record of a socket. Most are refused for their size or kind: the same
// again as a listening TCP socket.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "darwin/socket_record.h"

namespace {

void check(const std::optional<embrix::ListeningPort>& port) {
  if (port && (port->port < 1 || port->port > 65535)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  check(decodeListeningSocket({data, size}));
  isLoopback({data, size});

  std::array<std::uint8_t, socket_layout::kSize> record{};
  std::copy_n(data, std::min(size, in_sockinfo_layout::kSize),
              record.begin() + socket_layout::kInternetOffset);
  std::memcpy(record.data() + socket_layout::kKindOffset, &socket_layout::kKindTcp, 4);
  std::memcpy(record.data() + socket_layout::kTcpStateOffset, &socket_layout::kStateListen, 4);
  const auto port = decodeListeningSocket(record);
  check(port);
  const auto internet = Bytes(record).subspan(socket_layout::kInternetOffset);
  if (port && port->exposed == isLoopback(internet)) std::abort();
  return 0;
}
