#include "running/system_folders.h"

#include <algorithm>

namespace embrix {

namespace {

// macOS keeps /usr and /System to itself, and what a developer installs goes elsewhere. A Linux
// distribution puts its daemons, its session and the developer's tools into the same folders, under
// the same rights. Folders alone cannot tell them apart, so the list has two halves.
SystemFolders linuxFolders() {
  SystemFolders linux;
  linux.folders = {
      // Distribution packages. The short names are folders of their own where /usr is not merged.
      "/usr/", "/bin/", "/sbin/", "/lib/", "/lib32/", "/lib64/", "/libx32/",
      // Distributions whose packages stand in a store: the whole system lives there.
      "/nix/store/", "/gnu/store/",
      // Sandboxed packages: desktop applications with helpers that listen, and the package
      // system's own services. "/app/" is how an executable inside such a sandbox reads from
      // outside it.
      "/snap/", "/var/lib/snapd/", "/var/lib/flatpak/", "/app/"};
  linux.candidateFolders = linux.folders;

  // What an administrator or a developer compiled or installed by hand. /opt and the home folder
  // are in no list, so version managers are the user's as well.
  linux.userFolders = {"/usr/local/"};

  linux.userPrograms = {
      // Language runtimes and build daemons: what they run is the user's far more often than not.
      "node", "bun", "deno", "python", "ruby", "rails", "puma", "java", "php", "dotnet", "beam.smp",
      // Emulators, virtual machines, device bridges and agents.
      "qemu-system-", "adb", "claude", "codex",
      // Servers that a developer starts for a project. The copy that a distribution starts at boot
      // runs under an account of its own, so one with the user's id is the user's.
      "postgres", "mysqld", "mariadbd", "mongod", "redis-server", "valkey-server", "memcached",
      "nginx", "caddy", "hugo",
      // What listens in place of a container that runs without rights.
      "rootlessport", "rootlesskit", "pasta", "pasta.avx2"};

  // Applets, updaters and input methods of desktop sessions are scripts for the system's
  // interpreter ("/usr/bin/python3 /usr/bin/blueman-applet"). None of them listens for TCP, while
  // the developer's tools that are packaged the same way (notebooks, application servers) do.
  linux.scriptedPrograms = {"python"};
  return linux;
}

// Byte by byte: most paths differ from most folders in their second one.
bool beginsWith(std::string_view path, std::string_view folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first ==
         folder.end();
}

bool beginsWithOne(std::string_view path, const std::vector<std::string>& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&](const std::string& folder) { return beginsWith(path, folder); });
}

bool matches(std::string_view program, std::string_view entry) {
  if (!program.starts_with(entry)) return false;
  if (entry.ends_with('-')) return true;
  return program.find_first_not_of("0123456789.-", entry.size()) == std::string_view::npos;
}

bool isOne(std::string_view path, const std::vector<std::string>& programs) {
  if (programs.empty()) return false;
  const std::string_view program = path.substr(path.rfind('/') + 1);
  return std::any_of(programs.begin(), programs.end(),
                     [&](const std::string& entry) { return matches(program, entry); });
}

// The script among an interpreter's arguments; empty when it runs a module or nothing.
std::string_view scriptOf(const ProcessFacts& process) {
  for (std::size_t i = 1; i < process.arguments.size(); ++i) {
    const std::string& argument = process.arguments[i];
    if (argument == "-m") return {};
    if (!argument.starts_with('-')) return argument;
  }
  return {};
}

}  // namespace

SystemFolders SystemFolders::forHost(std::string_view hostName) {
  return hostName == "linux" ? linuxFolders() : SystemFolders();
}

bool SystemFolders::holdCandidate(std::string_view path) const {
  return beginsWithOne(path, candidateFolders) && !beginsWithOne(path, userFolders) &&
         !isOne(path, userPrograms);
}

bool SystemFolders::hold(const ProcessFacts& process) const {
  if (!process.path) return false;
  if (!beginsWithOne(*process.path, folders) || beginsWithOne(*process.path, userFolders)) {
    return false;
  }
  if (!isOne(*process.path, userPrograms)) return true;
  if (!process.ports.empty() || !isOne(*process.path, scriptedPrograms)) return false;
  const std::string_view script = scriptOf(process);
  return beginsWithOne(script, folders) && !beginsWithOne(script, userFolders);
}

}  // namespace embrix
