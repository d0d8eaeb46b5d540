#include "darwin/socket_record.h"

#include <algorithm>

namespace embrix {

namespace {

constexpr std::uint8_t kLoopbackNetwork = 127;  // 127.0.0.0/8

bool allZero(Bytes bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

bool isLoopback(Bytes socket) {
  using namespace in_sockinfo_layout;
  if (socket.size() < kSize) return false;
  const Bytes address = socket.subspan(kLocalAddressOffset, kAddressSize);
  if ((socket[kVersionFlagOffset] & kVersionIPv4) != 0) {
    return address[kIPv4Word] == kLoopbackNetwork;
  }
  if (allZero(address.first(15)) && address[15] == 1) return true;
  return allZero(address.first(10)) && address[10] == 0xff && address[11] == 0xff &&
         address[kIPv4Word] == kLoopbackNetwork;
}

std::optional<ListeningPort> decodeListeningSocket(Bytes record) {
  using namespace socket_layout;
  if (record.size() != kSize) return std::nullopt;
  if (fieldAt<std::int32_t>(record, kKindOffset) != kKindTcp) return std::nullopt;
  if (fieldAt<std::int32_t>(record, kTcpStateOffset) != kStateListen) return std::nullopt;
  const Bytes internet = record.subspan(kInternetOffset, kInternetSize);
  const int port = internet[in_sockinfo_layout::kLocalPortOffset] * 256 +
                   internet[in_sockinfo_layout::kLocalPortOffset + 1];
  if (port == 0) return std::nullopt;
  return ListeningPort{.port = port, .exposed = !isLoopback(internet)};
}

}  // namespace embrix
