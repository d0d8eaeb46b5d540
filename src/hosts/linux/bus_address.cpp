#include "hosts/linux/bus_address.h"

#include <cstdlib>
#include <string_view>

namespace embrix {

namespace {

constexpr const char* kSystemBus = "unix:path=/run/dbus/system_bus_socket";

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

// As D-Bus has it: in a value, every byte but these is written as "%" and two digits.
std::string escapedPath(const std::string& path) {
  constexpr std::string_view kPlain =
      "-_/\\.*0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr const char* kDigits = "0123456789abcdef";
  std::string escaped;
  for (const char c : path) {
    if (kPlain.find(c) != std::string_view::npos) {
      escaped += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      escaped += '%';
      escaped += kDigits[byte >> 4];
      escaped += kDigits[byte & 15];
    }
  }
  return escaped;
}

}  // namespace

std::string systemBusAddress() {
  const std::string told = variable("DBUS_SYSTEM_BUS_ADDRESS");
  return told.empty() ? kSystemBus : told;
}

std::string sessionBusAddress() {
  const std::string told = variable("DBUS_SESSION_BUS_ADDRESS");
  if (!told.empty()) return told;
  const std::string folder = variable("XDG_RUNTIME_DIR");
  return folder.empty() ? std::string() : "unix:path=" + escapedPath(folder) + "/bus";
}

}  // namespace embrix
