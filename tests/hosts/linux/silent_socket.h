// A socket where somebody listens who never says a word.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "base/descriptor.h"
#include "captured_tree.h"

namespace embrix {

class SilentSocket {
 public:
  SilentSocket() : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder_.root() + "/silent";
    if (path.size() >= sizeof address.sun_path) throw std::runtime_error("the path is too long");
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    if (::bind(listener_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
            0 ||
        ::listen(listener_.number(), 4) != 0) {
      throw std::runtime_error("no socket");
    }
    address_ = "unix:path=" + path;
  }

  const std::string& address() const { return address_; }

 private:
  CapturedTree folder_;
  Descriptor listener_;
  std::string address_;
};

}  // namespace embrix
