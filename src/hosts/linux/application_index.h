// The desktop's applications by what they are found by. Built in one pass over the desktop entries
// and not changed after: what is installed later is not in it. One thread at a time.
//
// An executable belongs to an application, in this order:
//   1. its desktop entry starts that very file, links and wrappers seen through; or the entry's
//   D-Bus
//      service does
//   2. the file lies in the folder of the snap, or is found in one Flatpak's files and in no
//   other's
//   3. the file lies in the own folder of the program that the entry starts (program_folders.h)
// Where several entries start one program (a handler of addresses, a page of the settings), the
// entry that is shown in menus and starts it with the fewest arguments stands for it. A folder
// claimed for different programs belongs to none.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "host/application_source.h"
#include "hosts/linux/desktop_command.h"
#include "hosts/linux/desktop_entry.h"

namespace embrix {

// What the environment says of where things are; each absent or empty text has its usual default.
struct DesktopEnvironment {
  std::string home;         // the user's home folder
  std::string dataHome;     // XDG_DATA_HOME
  std::string dataFolders;  // XDG_DATA_DIRS, with colons between
  std::string path;         // PATH, with colons between
};

class ApplicationIndex {
 public:
  ApplicationIndex(const std::string& root, const DesktopEnvironment& environment);

  // `executable` as a process tells it, links resolved. Null when it belongs to no application.
  const InstalledApplication* byExecutable(std::string_view executable) const;

  const InstalledApplication* byIdentifier(const std::string& identifier) const;

 private:
  // How well an entry stands for the program it starts; the smaller the better.
  using Rank = std::tuple<bool, int, bool, std::size_t, std::string>;
  struct Claim {
    std::size_t application = 0;
    Rank rank;
  };
  struct FolderClaim {
    std::string program;
    bool isContested = false;
    Claim claim;
  };
  struct FlatpakFiles {
    std::string folder;
    std::size_t application = 0;
  };

  std::vector<std::string> dataFolders() const;
  void addFolder(const std::string& folder, const std::string& idPrefix, int depth);
  void addEntry(const std::string& path, const std::string& id);
  void addServices(const std::string& dataFolder);
  void claim(const DesktopEntry& entry, const DesktopCommand& command, std::size_t application);
  void claimFolder(const std::string& folder, const std::string& program, const Claim& claim);
  void addFlatpak(const std::string& id, std::size_t application);
  std::optional<std::string> findProgram(const std::string& program) const;
  const InstalledApplication* at(std::optional<std::size_t> application) const;
  std::optional<std::size_t> inFlatpaks(std::string_view executable) const;
  std::optional<std::size_t> inFolders(std::string_view executable) const;

  std::string root_;
  DesktopEnvironment environment_;
  std::set<std::string> seenIDs_;  // hidden ones too
  std::vector<InstalledApplication> applications_;
  std::map<std::string, std::size_t, std::less<>> byID_;
  std::map<std::string, Claim, std::less<>> byProgram_;
  std::map<std::string, FolderClaim, std::less<>> byFolder_;
  std::map<std::string, Claim, std::less<>> bySnap_;
  std::vector<FlatpakFiles> flatpaks_;
};

}  // namespace embrix
