#include "hosts/linux/socket_diagnosis.h"

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "hosts/linux/number_scan.h"

namespace embrix {

namespace {

constexpr std::uint32_t kListenState = 10;  // TCP_LISTEN of the kernel's tcp_states.h
constexpr std::size_t kAnswerPiece = 32 * 1024;

class NetlinkSocket {
 public:
  NetlinkSocket() : descriptor_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG)) {}
  NetlinkSocket(const NetlinkSocket&) = delete;
  NetlinkSocket& operator=(const NetlinkSocket&) = delete;
  ~NetlinkSocket() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

bool askForListeners(int descriptor, std::uint8_t family) {
  struct {
    nlmsghdr header;
    inet_diag_req_v2 request;
  } message{};
  message.header.nlmsg_len = sizeof message;
  message.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
  message.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  message.request.sdiag_family = family;
  message.request.sdiag_protocol = IPPROTO_TCP;
  message.request.idiag_states = 1U << kListenState;
  return ::send(descriptor, &message, sizeof message, 0) == sizeof message;
}

// Appends the answer to one question. False when the kernel answered with an error.
bool takeAnswer(int descriptor, std::vector<ListeningSocket>& listeners) {
  alignas(nlmsghdr) std::array<std::uint8_t, kAnswerPiece> buffer;
  while (true) {
    const ssize_t size = ::recv(descriptor, buffer.data(), buffer.size(), 0);
    if (size <= 0) return false;
    std::size_t left = static_cast<std::size_t>(size);
    const std::uint8_t* at = buffer.data();
    while (left >= sizeof(nlmsghdr)) {
      nlmsghdr header;
      std::memcpy(&header, at, sizeof header);
      if (header.nlmsg_len < sizeof header || header.nlmsg_len > left) return false;
      if (header.nlmsg_type == NLMSG_DONE) return true;
      if (header.nlmsg_type == NLMSG_ERROR) return false;
      if (const auto listener = parseDiagnosis({at, header.nlmsg_len})) {
        listeners.push_back(*listener);
      }
      const std::size_t step = std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), left);
      at += step;
      left -= step;
    }
  }
}

// "0100007F": the address in 32-bit words, each in host order, as the kernel prints them.
std::optional<std::vector<std::uint8_t>> parseTableAddress(std::string_view text) {
  if (text.size() != 8 && text.size() != 32) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  for (std::size_t start = 0; start < text.size(); start += 8) {
    std::uint32_t word = 0;
    const char* end = text.data() + start + 8;
    const auto parsed = std::from_chars(text.data() + start, end, word, 16);
    if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
    std::uint8_t raw[4];
    std::memcpy(raw, &word, sizeof raw);
    bytes.insert(bytes.end(), raw, raw + sizeof raw);
  }
  return bytes;
}

// "  0: 0100007F:0BB8 00000000:0000 0A 00000000:00000000 00:00000000 00000000 1000 0 4242 …"
std::optional<ListeningSocket> parseTableLine(std::string_view line) {
  NumberScan scan(line);
  if (!scan.skip(1)) return std::nullopt;
  const std::string_view local = scan.word();
  if (!scan.skip(1)) return std::nullopt;
  if (scan.word() != "0A") return std::nullopt;
  const std::size_t colon = local.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto address = parseTableAddress(local.substr(0, colon));
  ListeningSocket listener;
  const char* end = local.data() + local.size();
  const auto port = std::from_chars(local.data() + colon + 1, end, listener.port, 16);
  if (!address || port.ec != std::errc() || port.ptr != end || listener.port < 1 ||
      listener.port > 0xffff) {
    return std::nullopt;
  }
  if (!scan.skip(5) || !scan.next(listener.inode)) return std::nullopt;
  listener.exposed = !isLoopbackAddress(*address);
  return listener;
}

}  // namespace

std::optional<std::vector<ListeningSocket>> diagnoseListeners() {
  const NetlinkSocket netlink;
  if (netlink.descriptor() < 0) return std::nullopt;
  std::vector<ListeningSocket> listeners;
  for (const std::uint8_t family : {std::uint8_t{AF_INET}, std::uint8_t{AF_INET6}}) {
    if (!askForListeners(netlink.descriptor(), family) ||
        !takeAnswer(netlink.descriptor(), listeners)) {
      return std::nullopt;
    }
  }
  return listeners;
}

std::optional<ListeningSocket> parseDiagnosis(std::span<const std::uint8_t> message) {
  inet_diag_msg diagnosis;
  if (message.size() < NLMSG_HDRLEN + sizeof diagnosis) return std::nullopt;
  std::memcpy(&diagnosis, message.data() + NLMSG_HDRLEN, sizeof diagnosis);
  if (diagnosis.idiag_state != kListenState || diagnosis.id.idiag_sport == 0) return std::nullopt;
  const std::size_t length = diagnosis.idiag_family == AF_INET ? 4 : 16;
  const auto* address = reinterpret_cast<const std::uint8_t*>(diagnosis.id.idiag_src);
  return ListeningSocket{.inode = diagnosis.idiag_inode,
                         .port = ntohs(diagnosis.id.idiag_sport),
                         .exposed = !isLoopbackAddress({address, length})};
}

std::vector<ListeningSocket> parseSocketTable(std::string_view text) {
  std::vector<ListeningSocket> listeners;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (const auto listener = parseTableLine(text.substr(0, end))) listeners.push_back(*listener);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return listeners;
}

bool isLoopbackAddress(std::span<const std::uint8_t> address) {
  if (address.size() == 4) return address[0] == 127;
  if (address.size() != 16) return false;
  const bool startsEmpty =
      std::all_of(address.begin(), address.begin() + 10, [](std::uint8_t b) { return b == 0; });
  if (!startsEmpty) return false;
  if (address[10] == 0xff && address[11] == 0xff) return address[12] == 127;
  return std::all_of(address.begin() + 10, address.end() - 1,
                     [](std::uint8_t b) { return b == 0; }) &&
         address[15] == 1;
}

}  // namespace embrix
