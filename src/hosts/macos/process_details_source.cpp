#include "hosts/macos/process_details_source.h"

#include <libproc.h>
#include <sys/proc_info.h>
#include <sys/sysctl.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "darwin/argument_block.h"
#include "darwin/socket_record.h"
#include "darwin/working_directory.h"

namespace embrix {

namespace {

static_assert(sizeof(int) == argument_block_layout::kCountSize);

static_assert(sizeof(proc_vnodepathinfo) == vnode_path_layout::kSize);
static_assert(offsetof(proc_vnodepathinfo, pvi_cdir.vip_path) ==
              vnode_path_layout::kDirectoryOffset);
static_assert(sizeof(vnode_info_path::vip_path) == vnode_path_layout::kPathCapacity);

static_assert(sizeof(socket_fdinfo) == socket_layout::kSize);
static_assert(offsetof(socket_fdinfo, psi.soi_kind) == socket_layout::kKindOffset);
static_assert(offsetof(socket_fdinfo, psi.soi_proto.pri_tcp.tcpsi_ini) ==
              socket_layout::kInternetOffset);
static_assert(offsetof(socket_fdinfo, psi.soi_proto.pri_tcp.tcpsi_state) ==
              socket_layout::kTcpStateOffset);
static_assert(SOCKINFO_TCP == socket_layout::kKindTcp);
static_assert(TSI_S_LISTEN == socket_layout::kStateListen);

static_assert(sizeof(in_sockinfo) == in_sockinfo_layout::kSize);
static_assert(sizeof(in_sockinfo) == socket_layout::kInternetSize);
static_assert(offsetof(in_sockinfo, insi_lport) == in_sockinfo_layout::kLocalPortOffset);
static_assert(offsetof(in_sockinfo, insi_vflag) == in_sockinfo_layout::kVersionFlagOffset);
static_assert(offsetof(in_sockinfo, insi_laddr) == in_sockinfo_layout::kLocalAddressOffset);
static_assert(sizeof(in_sockinfo::insi_laddr) == in_sockinfo_layout::kAddressSize);
static_assert(offsetof(in4in6_addr, i46a_addr4) == in_sockinfo_layout::kIPv4Word);
static_assert(INI_IPV4 == in_sockinfo_layout::kVersionIPv4);

std::vector<proc_fdinfo> openFiles(std::int32_t pid) {
  const int needed = ::proc_pidinfo(pid, PROC_PIDLISTFDS, 0, nullptr, 0);
  if (needed < 1) return {};
  std::vector<proc_fdinfo> files(static_cast<std::size_t>(needed) / sizeof(proc_fdinfo));
  const int size = ::proc_pidinfo(pid, PROC_PIDLISTFDS, 0, files.data(),
                                  static_cast<int>(files.size() * sizeof(proc_fdinfo)));
  files.resize(size < 1 ? 0 : static_cast<std::size_t>(size) / sizeof(proc_fdinfo));
  return files;
}

}  // namespace

std::vector<std::string> MacProcessDetailsSource::arguments(std::int32_t pid) {
  int name[] = {CTL_KERN, KERN_PROCARGS2, pid};
  constexpr u_int kNameSize = 3;
  std::size_t size = 0;
  if (::sysctl(name, kNameSize, nullptr, &size, nullptr, 0) != 0) return {};
  std::vector<std::uint8_t> block(size);
  if (::sysctl(name, kNameSize, block.data(), &size, nullptr, 0) != 0) return {};
  return decodeArguments(Bytes(block).first(std::min(size, block.size())));
}

std::optional<std::string> MacProcessDetailsSource::directory(std::int32_t pid) {
  std::array<std::uint8_t, vnode_path_layout::kSize> record{};
  const int size = ::proc_pidinfo(pid, PROC_PIDVNODEPATHINFO, 0, record.data(), record.size());
  if (size != static_cast<int>(record.size())) return std::nullopt;
  return decodeWorkingDirectory(record);
}

std::vector<ListeningPort> MacProcessDetailsSource::listening(std::int32_t pid) {
  std::vector<ListeningPort> ports;
  std::array<std::uint8_t, socket_layout::kSize> record{};
  for (const proc_fdinfo& file : openFiles(pid)) {
    if (file.proc_fdtype != PROX_FDTYPE_SOCKET) continue;
    const int size =
        ::proc_pidfdinfo(pid, file.proc_fd, PROC_PIDFDSOCKETINFO, record.data(), record.size());
    if (size != static_cast<int>(record.size())) continue;
    if (const auto port = decodeListeningSocket(record)) ports.push_back(*port);
  }
  std::stable_sort(ports.begin(), ports.end(),
                   [](const ListeningPort& a, const ListeningPort& b) { return a.port < b.port; });
  return ports;
}

}  // namespace embrix
