#include "cleanup/running_tools.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/text.h"

namespace embrix {

namespace {

// Package managers that also run the user's own programs, and count only while they install.
constexpr std::array<std::string_view, 3> kRunners = {"npm", "pnpm", "yarn"};

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

template <std::size_t size>
bool isOneOf(std::string_view word, const std::array<std::string_view, size>& words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

struct CommandLine {
  std::string_view command;
  std::string_view arguments;
};

CommandLine splitCommand(std::string_view line) {
  const std::size_t start = line.find_first_not_of(' ');
  if (start == std::string_view::npos) return {};
  const std::size_t end = std::min(line.find(' ', start), line.size());
  return {.command = line.substr(start, end - start), .arguments = line.substr(end)};
}

// A package manager that is itself a script: `line` is the whole line of the node that runs it.
std::optional<std::string_view> scriptIn(std::string_view line) {
  if (contains(line, "npm-cli.") || contains(line, "/bin/npm")) return "npm";
  if (contains(line, "/pnpm")) return "pnpm";
  if (contains(line, "/yarn")) return "yarn";
  return std::nullopt;
}

std::optional<std::string_view> installerIn(std::string_view name, std::string_view line,
                                            std::string_view arguments) {
  if (isOneOf(name, kRunners)) {
    if (!RunningTools::installing(line)) return std::nullopt;
    return name;
  }
  if (name == "brew" || name == "pod") return name;
  if (name == "pip" || name == "pip3") return "pip";
  if (name == "swift-build" || name == "swift-package") return "swift";
  if (name == "node") return RunningTools::installing(arguments) ? scriptIn(line) : std::nullopt;
  if (name.starts_with("python") && contains(line, " -m pip")) return "pip";
  return std::nullopt;
}

}  // namespace

RunningTools RunningTools::from(const std::vector<std::string_view>& processArguments) {
  RunningTools tools;
  for (const std::string_view line : processArguments) {
    const auto [command, arguments] = splitCommand(line);
    const std::string_view name = Text::lastPiece(command, '/');
    if (command.ends_with("Xcode.app/Contents/MacOS/Xcode") || name == "xcodebuild") {
      tools.xcode = true;
    }
    if (contains(command, "Simulator.app/Contents/MacOS/Simulator") || name == "launchd_sim") {
      tools.simulator = true;
    }
    if (contains(line, "GradleDaemon") || contains(line, "GradleWrapperMain")) tools.gradle = true;
    if (const auto installer = installerIn(name, line, arguments)) {
      tools.installers.emplace(*installer);
    }
  }
  return tools;
}

bool RunningTools::installing(std::string_view line) {
  constexpr std::array<std::string_view, 10> kInstalls = {
      "install", "i", "ci", "add", "update", "up", "upgrade", "fetch", "dlx", "outdated"};
  const auto pieces = Text::split(line, ' ');
  return std::any_of(pieces.begin(), pieces.end(),
                     [&](std::string_view piece) { return isOneOf(piece, kInstalls); });
}

}  // namespace embrix
