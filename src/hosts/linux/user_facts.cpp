#include "hosts/linux/user_facts.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace embrix {

namespace {

std::optional<std::string> homeOf(uid_t uid) {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16 * 1024> buffer;
  if (::getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return std::nullopt;
  }
  return std::string(found->pw_dir);
}

bool isAbsolute(const std::optional<std::string>& path) {
  return path && path->starts_with('/');
}

}  // namespace

UserFacts userFacts(std::uint32_t uid, const std::optional<std::string>& homeVariable,
                    const std::optional<std::string>& databaseHome) {
  std::string home = "/";
  if (isAbsolute(homeVariable)) {
    home = *homeVariable;
  } else if (isAbsolute(databaseHome)) {
    home = *databaseHome;
  }
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  return {.uid = uid, .homeDirectory = std::move(home)};
}

UserFacts linuxUserFacts() {
  const char* const variable = std::getenv("HOME");
  const uid_t uid = ::getuid();
  return userFacts(uid, variable == nullptr ? std::nullopt : std::optional<std::string>(variable),
                   homeOf(uid));
}

}  // namespace embrix
