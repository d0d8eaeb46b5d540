#include "hosts/macos/user_facts.h"

#include <pwd.h>
#include <sys/syslimits.h>
#include <sysdir.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>

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

// The first folder that the platform names; empty when it names none.
std::string applicationSupport(const std::string& home) {
  std::array<char, PATH_MAX> path = {};
  const auto state = ::sysdir_start_search_path_enumeration(SYSDIR_DIRECTORY_APPLICATION_SUPPORT,
                                                            SYSDIR_DOMAIN_MASK_USER);
  if (::sysdir_get_next_search_path_enumeration(state, path.data()) == 0) return "";
  const std::string named = path.data();
  return named.starts_with("~/") ? (home == "/" ? "" : home) + named.substr(1) : named;
}

}  // namespace

UserFacts macUserFacts() {
  const uid_t uid = ::getuid();
  const char* const variable = std::getenv("HOME");
  std::string home = variable == nullptr ? "" : variable;
  if (!home.starts_with('/')) home = databaseHome(uid);
  if (!home.starts_with('/')) home = "/";
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  return {
      .uid = uid, .homeDirectory = home, .applicationSupportDirectory = applicationSupport(home)};
}

}  // namespace embrix
