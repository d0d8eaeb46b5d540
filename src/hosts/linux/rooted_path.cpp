#include "hosts/linux/rooted_path.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>

#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

constexpr int kMostLinks = 40;  // as the kernel

std::string withoutLast(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace

std::optional<std::string> resolvedPath(const std::string& root, std::string_view path) {
  std::string done;        // resolved so far; empty stands for the root
  std::string rest(path);  // still to walk
  int links = 0;
  while (!rest.empty()) {
    const auto slash = rest.find('/');
    const std::string name = rest.substr(0, slash);
    rest = slash == std::string::npos ? std::string() : rest.substr(slash + 1);
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      done = withoutLast(done);
      continue;
    }
    const std::string next = done + "/" + name;
    const std::string real = belowRoot(root, next);
    struct stat status {};
    if (::lstat(real.c_str(), &status) != 0) return std::nullopt;
    if (!S_ISLNK(status.st_mode)) {
      done = next;
      continue;
    }
    std::array<char, PATH_MAX> target;
    const ssize_t size = ::readlink(real.c_str(), target.data(), target.size());
    if (size <= 0 || ++links > kMostLinks) return std::nullopt;
    const std::string_view link(target.data(), static_cast<std::size_t>(size));
    if (link.front() == '/') done.clear();
    rest = std::string(link).append("/").append(rest);
    if (rest.size() > 2 * PATH_MAX) return std::nullopt;
  }
  return done.empty() ? "/" : done;
}

bool isExecutable(const std::string& root, const std::string& resolved) {
  const std::string real = belowRoot(root, resolved);
  struct stat status {};
  return ::stat(real.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(real.c_str(), X_OK) == 0;
}

}  // namespace embrix
