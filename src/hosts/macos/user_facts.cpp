#include "hosts/macos/user_facts.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <utility>

namespace embrix {

namespace {

std::string databaseHome(uid_t uid) {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16 * 1024> buffer;
  if (::getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return "/";
  }
  return found->pw_dir;
}

}  // namespace

UserFacts macUserFacts() {
  const uid_t uid = ::getuid();
  const char* const variable = std::getenv("HOME");
  std::string home = variable == nullptr ? "" : variable;
  if (!home.starts_with('/')) home = databaseHome(uid);
  if (!home.starts_with('/')) home = "/";
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  return {.uid = uid, .homeDirectory = std::move(home)};
}

}  // namespace embrix
