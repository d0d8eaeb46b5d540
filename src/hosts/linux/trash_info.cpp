#include "hosts/linux/trash_info.h"

#include <ctime>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

namespace embrix {

namespace {

bool isUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("-_.!~*'()/").find(c) != std::string_view::npos;
}

std::string localTime(double seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  ::localtime_r(&time, &local);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", local.tm_year + 1900, local.tm_mon + 1,
                     local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

}  // namespace

std::string TrashInfo::text() const {
  std::string escaped;
  for (const char c : path) {
    if (isUnreserved(c)) {
      escaped.push_back(c);
    } else {
      fmt::format_to(std::back_inserter(escaped), "%{:02X}", static_cast<unsigned char>(c));
    }
  }
  return fmt::format("[Trash Info]\nPath={}\nDeletionDate={}\n", escaped, localTime(deleted));
}

}  // namespace embrix
