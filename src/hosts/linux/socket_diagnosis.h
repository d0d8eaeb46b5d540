// The listening TCP sockets of the machine in one question to the kernel.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct ListeningSocket {
  std::uint64_t inode = 0;  // what a descriptor's link names: "socket:[12345]"
  int port = 0;             // 1 to 65535
  bool exposed = false;     // not bound to a loopback address

  bool operator==(const ListeningSocket&) const = default;
};

// Asks over netlink's socket diagnosis, IPv4 and IPv6, in this process's network namespace. Absent
// when the kernel refuses; the tables below /proc/net say the same at fifty times the cost.
std::optional<std::vector<ListeningSocket>> diagnoseListeners();

// The listener that one netlink message of the answer tells of; absent for other states, without a
// port, and when it is cut short. Exposed for tests.
std::optional<ListeningSocket> parseDiagnosis(std::span<const std::uint8_t> message);

// The listeners of /proc/net/tcp or /proc/net/tcp6; lines that make no sense are passed over.
std::vector<ListeningSocket> parseSocketTable(std::string_view text);

// True for 127.0.0.0/8, ::1 and ::ffff:127.0.0.0/104. `address` has 4 or 16 bytes in network order.
bool isLoopbackAddress(std::span<const std::uint8_t> address);

}  // namespace embrix
