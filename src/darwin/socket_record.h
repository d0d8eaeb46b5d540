// The record of one open socket, as `proc_pidfdinfo` gives it for PROC_PIDFDSOCKETINFO. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "darwin/byte_fields.h"
#include "host/process_details_source.h"

namespace embrix {

// Places within `socket_fdinfo`.
namespace socket_layout {
inline constexpr std::size_t kSize = 792;
inline constexpr std::size_t kKindOffset = 256;      // psi.soi_kind, signed 32-bit
inline constexpr std::size_t kInternetOffset = 264;  // …pri_tcp.tcpsi_ini, an in_sockinfo
inline constexpr std::size_t kInternetSize = 80;
inline constexpr std::size_t kTcpStateOffset = 344;  // …pri_tcp.tcpsi_state, signed 32-bit

inline constexpr std::int32_t kKindTcp = 2;      // SOCKINFO_TCP
inline constexpr std::int32_t kStateListen = 1;  // TSI_S_LISTEN
}  // namespace socket_layout

// Places within `in_sockinfo`.
namespace in_sockinfo_layout {
inline constexpr std::size_t kSize = 80;
inline constexpr std::size_t kLocalPortOffset = 4;      // insi_lport: two bytes in network order
inline constexpr std::size_t kVersionFlagOffset = 24;   // insi_vflag, one byte
inline constexpr std::size_t kLocalAddressOffset = 48;  // insi_laddr, sixteen bytes
inline constexpr std::size_t kAddressSize = 16;
inline constexpr std::size_t kIPv4Word = 12;  // within the address: where an IPv4 address lies

inline constexpr std::uint8_t kVersionIPv4 = 0x1;  // INI_IPV4
}  // namespace in_sockinfo_layout

// True when the socket's local address can be reached from this machine alone. A wildcard address
// is not one. `socket` holds an in_sockinfo; fewer bytes than that are no loopback.
bool isLoopback(Bytes socket);

// The port of a TCP socket in the listening state. Absent for any other socket, for a record that
// is not of exactly the right size, and for port 0, on which nobody can listen.
std::optional<ListeningPort> decodeListeningSocket(Bytes record);

}  // namespace embrix
