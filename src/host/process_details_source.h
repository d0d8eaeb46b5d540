// The facts of a process that cost more than a tick may spend. Sampling thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace embrix {

struct ListeningPort {
  int port = 0;          // 1 to 65535
  bool exposed = false;  // reachable from other machines: not bound to a loopback address

  bool operator==(const ListeningPort&) const = default;
};

class ProcessDetailsSource {
 public:
  virtual ~ProcessDetailsSource() = default;

  // Told once before the processes of a scan are asked about, so that a host which reads the
  // sockets of all processes in one pass can do so.
  virtual void beginScan() {}

  // The argument vector, the program first, each as the process gave it (any bytes). Empty when
  // unreadable.
  virtual std::vector<std::string> arguments(std::int32_t pid) = 0;

  // Current working directory; absent when unreadable.
  virtual std::optional<std::string> directory(std::int32_t pid) = 0;

  // TCP sockets in the listening state, ascending by port; the same port can stand there more than
  // once. Empty when unreadable.
  virtual std::vector<ListeningPort> listening(std::int32_t pid) = 0;
};

}  // namespace embrix
