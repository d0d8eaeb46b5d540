#include "hosts/macos/system_control.h"

#include <sys/sysctl.h>

#include <algorithm>

namespace embrix {

std::optional<std::string> systemText(const char* name) {
  std::size_t size = 0;
  if (::sysctlbyname(name, nullptr, &size, nullptr, 0) != 0 || size < 1) return std::nullopt;
  std::string text(size, '\0');
  if (::sysctlbyname(name, text.data(), &size, nullptr, 0) != 0) return std::nullopt;
  text.resize(std::min({text.find('\0'), size, text.size()}));
  return text;
}

std::optional<std::int32_t> systemNumber(const char* name) {
  std::int32_t number = 0;
  std::size_t size = sizeof number;
  if (::sysctlbyname(name, &number, &size, nullptr, 0) != 0 || size != sizeof number) {
    return std::nullopt;
  }
  return number;
}

}  // namespace embrix
