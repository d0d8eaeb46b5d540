// The folders that are never the user's own, held as data for the rules that tell a thing the user
// started from a thing that came with the system. All paths are absolute; all comparisons are byte
// by byte. Values: any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/process_facts.h"

namespace embrix {

struct SystemFolders {
  // As made by default: macOS.
  //
  // A program whose path begins with one of these is the system's.
  std::vector<std::string> folders = {"/System/", "/usr/", "/Library/Apple/", "/sbin/", "/bin/"};

  // The same for the first look, when only the path of a process is known: who stands in one of
  // these is not even asked for its arguments and sockets.
  std::vector<std::string> candidateFolders = {"/System/", "/usr/"};

  // Folders inside the above that are the user's after all.
  std::vector<std::string> userFolders = {};

  // Programs that are the user's wherever they stand, by the last piece of their path. An entry
  // stands for its own name and for that name with a version behind it ("python" for "python3.11",
  // "node" for "node-20"); an entry that ends in "-" for every name that begins with it.
  std::vector<std::string> userPrograms = {};

  // Those of userPrograms in which systems write programs of their own. Such a process is the
  // system's when its script stands in one of `folders` and it listens on no port.
  std::vector<std::string> scriptedPrograms = {};

  // `hostName` as in Host::name. Every name but "linux" gives the default.
  static SystemFolders forHost(std::string_view hostName);

  // Whether a process with this executable is the system's, as far as its path alone can tell.
  bool holdCandidate(std::string_view path) const;

  // Whether the process is the system's. One without a path is not.
  bool hold(const ProcessFacts& process) const;
};

}  // namespace embrix
