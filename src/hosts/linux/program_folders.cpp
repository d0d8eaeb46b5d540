#include "hosts/linux/program_folders.h"

#include <algorithm>
#include <array>

#include "hosts/linux/rooted_path.h"
#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

// An application's own folder lies in one of these, or deeper; "~" is the user's home.
constexpr std::array<std::string_view, 11> kBases = {
    "/opt",           "/usr/lib",       "/usr/lib64",       "/usr/libexec",
    "/usr/share",     "/usr/local/lib", "/usr/local/share", "/usr/local/libexec",
    "~/.local/share", "~/.local/lib",   "~/.local/opt",
};

// Folders below those that many programs share, without their versions.
constexpr std::array<std::string_view, 14> kShared = {
    "bin",     "sbin", "dbus",         "gcc",    "git-core", "jvm",  "kf",
    "libexec", "llvm", "node_modules", "python", "qt",       "ruby", "systemd",
};

bool isShared(std::string_view name) {
  // The library folder of an architecture, "x86_64-linux-gnu".
  if (name.find("-linux-") != std::string_view::npos) return true;
  const auto last = name.find_last_not_of("0123456789.-");
  if (last == std::string_view::npos) return false;  // a version alone
  return std::find(kShared.begin(), kShared.end(), name.substr(0, last + 1)) != kShared.end();
}

std::string baseWithHome(std::string_view base, const std::string& home) {
  return base.starts_with('~') ? home + std::string(base.substr(1)) : std::string(base);
}

// Whether every folder of `rest` ("/google/chrome") below a base can be an application's.
bool isOwnBelowBase(std::string_view rest) {
  bool isOwn = false;
  bool isBroken = false;
  forEachPiece(rest.substr(1), '/', [&](std::string_view name) {
    if (!isShared(name)) {
      isOwn = true;
    } else if (name.find("-linux-") == std::string_view::npos) {
      isBroken = true;
    }
  });
  return isOwn && !isBroken;
}

}  // namespace

std::optional<std::string> ownFolder(const std::string& program, const std::string& home) {
  std::string folder = program.substr(0, program.rfind('/'));
  for (const std::string_view last : {"/bin", "/sbin"}) {
    if (folder.ends_with(last)) folder.erase(folder.size() - last.size());
  }
  for (const std::string_view base : kBases) {
    const std::string start = baseWithHome(base, home);
    if (!folder.starts_with(start + "/")) continue;
    if (isOwnBelowBase(std::string_view(folder).substr(start.size()))) return folder;
  }
  return std::nullopt;
}

std::vector<std::string> foldersNamedFor(const std::string& root, std::string_view program) {
  std::vector<std::string> bases;
  for (const std::string_view base : kBases) {
    if (!base.starts_with('~')) bases.emplace_back(base);
  }
  for (const std::string& name : namesIn(belowRoot(root, "/usr/lib"))) {
    if (name.find("-linux-") != std::string::npos) bases.push_back("/usr/lib/" + name);
  }
  std::vector<std::string> folders;
  if (isShared(program)) return folders;
  for (const std::string& base : bases) {
    const auto folder = resolvedPath(root, base + "/" + std::string(program));
    if (!folder || std::find(folders.begin(), folders.end(), *folder) != folders.end()) continue;
    for (const std::string_view suffix : {"", "-bin", ".bin"}) {
      const auto inside = resolvedPath(root, *folder + "/" + std::string(program).append(suffix));
      if (!inside || !isExecutable(root, *inside) || isScript(root, *inside)) continue;
      folders.push_back(*folder);
      break;
    }
  }
  return folders;
}

bool isScript(const std::string& root, const std::string& resolved) {
  return readSystemFile(belowRoot(root, resolved), 2) == "#!";
}

}  // namespace embrix
