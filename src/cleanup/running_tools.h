// Which developer tools are at work right now, read from the command lines of all processes: a
// cache is not to be cleared under the tool that writes to it. Pure logic over lines of text, any
// bytes.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct RunningTools {
  bool xcode = false;      // Xcode or xcodebuild
  bool simulator = false;  // the Simulator application or a simulated device
  bool gradle = false;     // a Gradle daemon or wrapper
  // Of "npm", "pnpm", "yarn", "brew", "pip", "pod", "swift": those writing to their caches.
  std::set<std::string, std::less<>> installers;

  // One line for each process, each judged alone: the program's path, then its arguments. A path
  // with a blank in it is cut there and can go unrecognised.
  static RunningTools from(const std::vector<std::string_view>& processArguments);

  // Whether a word of the line is one with which a package manager writes to its cache.
  static bool installing(std::string_view line);

  bool operator==(const RunningTools&) const = default;
};

}  // namespace embrix
