#include "hosts/linux/application_index.h"

#include <algorithm>
#include <utility>

#include "hosts/linux/program_folders.h"
#include "hosts/linux/rooted_path.h"
#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

constexpr std::string_view kEntrySuffix = ".desktop";
constexpr std::string_view kServiceSuffix = ".service";
constexpr std::size_t kMostApplications = 20'000;
constexpr int kDeepest = 4;  // of folders below "applications"

constexpr std::string_view kUsualDataFolders = "/usr/local/share:/usr/share";
constexpr std::string_view kUsualPath =
    "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin:/usr/games:/usr/local/games";

std::string_view baseName(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

template <typename Map, typename Value, typename Better>
void putBest(Map& map, const std::string& key, Value value, Better better) {
  const auto [place, isNew] = map.try_emplace(key, value);
  if (!isNew && better(value, place->second)) place->second = std::move(value);
}

}  // namespace

ApplicationIndex::ApplicationIndex(const std::string& root, const DesktopEnvironment& environment)
    : root_(root), environment_(environment) {
  const std::vector<std::string> folders = dataFolders();
  for (const std::string& folder : folders) addFolder(folder + "/applications", "", 0);
  for (const std::string& folder : folders) addServices(folder + "/dbus-1/services");
}

// In the order in which the first entry of an id hides the others. The usual folders are searched
// even when the environment leaves them out, as that of a service does.
std::vector<std::string> ApplicationIndex::dataFolders() const {
  std::vector<std::string> folders;
  const auto add = [&](std::string_view folder) {
    if (!folder.starts_with('/')) return;
    while (folder.size() > 1 && folder.ends_with('/')) folder.remove_suffix(1);
    if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
      folders.emplace_back(folder);
    }
  };
  const std::string usualHome = environment_.home + "/.local/share";
  add(environment_.dataHome.empty() ? usualHome : environment_.dataHome);
  forEachPiece(environment_.dataFolders, ':', add);
  add(usualHome + "/flatpak/exports/share");
  add("/var/lib/flatpak/exports/share");
  add("/var/lib/snapd/desktop");
  forEachPiece(kUsualDataFolders, ':', add);
  return folders;
}

void ApplicationIndex::addFolder(const std::string& folder, const std::string& idPrefix,
                                 int depth) {
  for (const std::string& name : namesIn(belowRoot(root_, folder))) {
    const std::string path = folder + "/" + name;
    if (name.ends_with(kEntrySuffix)) {
      addEntry(path, idPrefix + name.substr(0, name.size() - kEntrySuffix.size()));
    } else if (depth < kDeepest && name.find('.') == std::string::npos) {
      addFolder(path, idPrefix + name + "-", depth + 1);
    }
  }
}

void ApplicationIndex::addEntry(const std::string& path, const std::string& id) {
  if (id.empty() || applications_.size() >= kMostApplications) return;
  // Exported entries are links to absolute paths.
  const auto real = resolvedPath(root_, path);
  const auto text = real ? readSystemFile(belowRoot(root_, *real), 1024 * 1024) : std::nullopt;
  const auto entry = text ? parseDesktopEntry(*text) : std::nullopt;
  if (!entry || !seenIDs_.insert(id).second || entry->isHidden) return;
  if (entry->tryExec && !findProgram(*entry->tryExec)) return;

  const std::size_t application = applications_.size();
  applications_.push_back({entry->name, id, path});
  byID_.try_emplace(id, application);
  const auto command = parseExec(entry->exec);
  std::string flatpak = entry->flatpakID;
  if (flatpak.empty() && command) flatpak = command->flatpakID;
  if (!flatpak.empty()) {
    addFlatpak(flatpak, application);
  } else if (command) {
    claim(*entry, *command, application);
  }
}

void ApplicationIndex::claim(const DesktopEntry& entry, const DesktopCommand& command,
                             std::size_t application) {
  const std::string& id = applications_[application].identifier;
  const std::string name(baseName(command.program));
  const Claim claim{application,
                    {entry.isNoDisplay, command.argumentCount, id != name, id.size(), id}};
  const auto better = [](const Claim& a, const Claim& b) { return a.rank < b.rank; };
  if (!entry.snapInstance.empty()) putBest(bySnap_, entry.snapInstance, claim, better);

  const auto program = findProgram(command.program);
  if (!program || isInterpreter(*program)) return;
  if (!isScript(root_, *program)) putBest(byProgram_, *program, claim, better);
  if (const auto folder = ownFolder(*program, environment_.home)) {
    claimFolder(*folder, *program, claim);
  } else if (isScript(root_, *program)) {
    for (const std::string& other : foldersNamedFor(root_, baseName(*program))) {
      claimFolder(other, *program, claim);
    }
  }
}

void ApplicationIndex::claimFolder(const std::string& folder, const std::string& program,
                                   const Claim& claim) {
  const auto [place, isNew] = byFolder_.try_emplace(folder, FolderClaim{program, false, claim});
  if (isNew) return;
  FolderClaim& known = place->second;
  if (known.program != program) {
    known.isContested = true;
  } else if (claim.rank < known.claim.rank) {
    known.claim = claim;
  }
}

void ApplicationIndex::addFlatpak(const std::string& id, std::size_t application) {
  if (id.find('/') != std::string::npos) return;
  for (const std::string& base :
       {environment_.home + "/.local/share/flatpak", std::string("/var/lib/flatpak")}) {
    const auto files = resolvedPath(root_, base + "/app/" + id + "/current/active/files");
    if (files) flatpaks_.push_back({*files, application});
  }
}

// A D-Bus service that has an application's id is that application, started by the bus.
void ApplicationIndex::addServices(const std::string& folder) {
  for (const std::string& name : namesIn(belowRoot(root_, folder))) {
    if (!name.ends_with(kServiceSuffix)) continue;
    const auto application = byID_.find(name.substr(0, name.size() - kServiceSuffix.size()));
    if (application == byID_.end()) continue;
    const auto text = readSystemFile(belowRoot(root_, folder + "/" + name));
    if (!text) continue;
    std::string exec;
    forEachPiece(*text, '\n', [&](std::string_view line) {
      if (line.starts_with("Exec=")) exec = line.substr(5);
    });
    const auto command = parseExec(exec);
    const auto program = command ? findProgram(command->program) : std::nullopt;
    if (!program || isInterpreter(*program) || isScript(root_, *program)) continue;
    byProgram_.try_emplace(*program, Claim{application->second, {}});
  }
}

std::optional<std::string> ApplicationIndex::findProgram(const std::string& program) const {
  std::optional<std::string> found;
  const auto tryPath = [&](const std::string& path) {
    if (found || !path.starts_with('/')) return;
    auto real = resolvedPath(root_, path);
    if (real && isExecutable(root_, *real)) found = std::move(real);
  };
  if (program.empty()) return found;
  if (program.find('/') != std::string::npos) {
    tryPath(program);
    return found;
  }
  const auto tryFolder = [&](std::string_view folder) {
    tryPath(std::string(folder) + "/" + program);
  };
  if (!environment_.path.empty()) forEachPiece(environment_.path, ':', tryFolder);
  forEachPiece(kUsualPath, ':', tryFolder);
  return found;
}

const InstalledApplication* ApplicationIndex::at(std::optional<std::size_t> application) const {
  return application ? &applications_[*application] : nullptr;
}

const InstalledApplication* ApplicationIndex::byIdentifier(const std::string& identifier) const {
  const auto found = byID_.find(identifier);
  return found == byID_.end() ? nullptr : &applications_[found->second];
}

std::optional<std::size_t> ApplicationIndex::inFlatpaks(std::string_view executable) const {
  // Inside every Flatpak its own files are /app.
  constexpr std::string_view kFiles = "/app/";
  if (!executable.starts_with(kFiles)) return std::nullopt;
  std::optional<std::size_t> owner;
  for (const FlatpakFiles& files : flatpaks_) {
    const std::string inside = files.folder + "/" + std::string(executable.substr(kFiles.size()));
    if (!resolvedPath(root_, inside)) continue;
    if (owner && owner != files.application) return std::nullopt;
    owner = files.application;
  }
  return owner;
}

std::optional<std::size_t> ApplicationIndex::inFolders(std::string_view executable) const {
  for (auto slash = executable.rfind('/'); slash != std::string_view::npos && slash > 0;
       slash = executable.rfind('/', slash - 1)) {
    const auto found = byFolder_.find(executable.substr(0, slash));
    if (found == byFolder_.end()) continue;
    if (found->second.isContested) return std::nullopt;
    return found->second.claim.application;
  }
  return std::nullopt;
}

const InstalledApplication* ApplicationIndex::byExecutable(std::string_view executable) const {
  // What the kernel appends once a running program's file was replaced, as updates do.
  constexpr std::string_view kDeleted = " (deleted)";
  if (executable.ends_with(kDeleted)) executable.remove_suffix(kDeleted.size());
  if (!executable.starts_with('/')) return nullptr;
  const auto program = byProgram_.find(executable);
  if (program != byProgram_.end()) return at(program->second.application);
  constexpr std::string_view kSnaps = "/snap/";
  if (executable.starts_with(kSnaps)) {
    const std::string_view inside = executable.substr(kSnaps.size());
    const auto snap = bySnap_.find(inside.substr(0, inside.find('/')));
    if (snap != bySnap_.end()) return at(snap->second.application);
  }
  if (const auto flatpak = inFlatpaks(executable)) return at(flatpak);
  return at(inFolders(executable));
}

}  // namespace embrix
