// How ForgottenFinder names one process and its project.
#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "running/forgotten_finder.h"

namespace embrix {

namespace {

using Arguments = std::span<const std::string>;
using Description = ForgottenFinder::Description;

constexpr std::string_view kServerSymbol = "server.rack";

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// A path of slashes alone is "/".
std::string_view lastPathComponent(std::string_view path) {
  const std::string_view last = Text::lastPiece(path, '/');
  return last.empty() ? path.substr(0, 1) : last;
}

std::string joined(Arguments arguments) {
  std::string text;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i > 0) text += ' ';
    text += arguments[i];
  }
  return text;
}

// Whether the joined arguments contain a part without blanks.
bool contain(Arguments arguments, std::string_view part) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [&](const std::string& argument) { return contains(argument, part); });
}

// The argument behind the first `option`; absent when there is none.
std::optional<std::string_view> valueOf(std::string_view option, Arguments arguments) {
  const auto found = std::find(arguments.begin(), arguments.end(), option);
  if (found == arguments.end() || found + 1 == arguments.end()) return std::nullopt;
  return *(found + 1);
}

bool isOption(std::string_view argument) {
  return argument.starts_with('-');
}

Description emulator(Arguments rest) {
  if (const auto device = valueOf("-avd", rest)) {
    return {"Android emulator · " + std::string(*device), "iphone.gen3"};
  }
  return {"QEMU virtual machine", std::string(kServerSymbol)};
}

std::optional<Description> javaTool(Arguments rest) {
  if (contain(rest, "GradleDaemon")) return Description{"Gradle daemon", "hammer"};
  if (contain(rest, "KotlinCompileDaemon") || contain(rest, "kotlin-daemon")) {
    return Description{"Kotlin daemon", "hammer"};
  }
  return std::nullopt;
}

// Some programs write a title of their own over their command line, which leaves one argument and
// perhaps blank ones: "next-server (v15.1.0)".
std::optional<std::string> rewrittenTitle(Arguments arguments, std::string_view runtime) {
  const auto isBlank = [](const std::string& argument) { return argument.empty(); };
  if (arguments.empty() || arguments.front().empty()) return std::nullopt;
  if (!std::all_of(arguments.begin() + 1, arguments.end(), isBlank)) return std::nullopt;
  const std::string& title = arguments.front();
  if (Text::lowercased(lastPathComponent(title)).starts_with(runtime)) return std::nullopt;
  return title.substr(0, title.find(" ("));
}

std::optional<Description> pythonTool(Arguments rest) {
  auto program = valueOf("-m", rest);
  if (!program) {
    const auto script = std::find_if_not(rest.begin(), rest.end(), isOption);
    if (script == rest.end()) return std::nullopt;
    program = lastPathComponent(*script);
  }
  return Description{"python " + std::string(*program), std::string(kServerSymbol)};
}

std::optional<Description> toolByName(std::string_view name) {
  if (name == "claude") return Description{"Claude Code", "sparkles"};
  if (name == "codex") return Description{"Codex", "sparkles"};
  if (contains(name, "orbstack")) return Description{"OrbStack VM", "shippingbox"};
  if (name.starts_with("com.docker") || name == "docker") {
    return Description{"Docker VM", "shippingbox"};
  }
  if (name == "com.apple.virtualization.virtualmachine") {
    return Description{"Virtual machine", "shippingbox"};
  }
  if (name == "adb") return Description{"Android debug bridge (adb)", "cable.connector"};
  return std::nullopt;
}

// What npm and its like run is told by their first words; other tools are told by their own name.
bool isPackageRunner(std::string_view tool) {
  return tool == "npm" || tool == "pnpm" || tool == "yarn";
}

bool isScriptVerb(std::string_view word) {
  constexpr std::array<std::string_view, 5> kVerbs = {"dev", "start", "serve", "watch", "preview"};
  return std::find(kVerbs.begin(), kVerbs.end(), word) != kVerbs.end();
}

// The tool that a script belongs to: its package when it is installed, else the script's own name.
std::string_view toolOf(std::string_view script) {
  const std::string_view own = lastPathComponent(script);
  if (!contains(script, "/node_modules/")) return own.starts_with("npm-cli") ? "npm" : own;
  // From the end to the innermost such folder; what stands behind it is the package.
  std::string_view package;
  std::string_view rest = script;
  while (true) {
    const std::string_view piece = Text::lastPiece(rest, '/');
    if (piece.empty() || piece == "node_modules") break;
    package = piece;
    rest = rest.substr(0, static_cast<std::size_t>(piece.data() - rest.data()));
  }
  return package.empty() || package == ".bin" ? own : package;
}

// The first component of a path, which is cut off; empty when there is none.
std::string_view takeComponent(std::string_view& path) {
  const std::size_t start = std::min(path.find_first_not_of('/'), path.size());
  const std::size_t end = std::min(path.find('/', start), path.size());
  const std::string_view component = path.substr(start, end - start);
  path.remove_prefix(end);
  return component;
}

}  // namespace

std::optional<Description> ForgottenFinder::describe(const ProcessFacts& process) {
  return describe(process, Text::lowercased(process.name));
}

std::optional<Description> ForgottenFinder::describe(const ProcessFacts& process,
                                                     std::string_view name) {
  const Arguments all(process.arguments);
  const Arguments rest = all.empty() ? all : all.subspan(1);

  if (name.starts_with("qemu-system")) return emulator(rest);
  if (name == "java") return javaTool(rest);
  if (name == "node" || name == "bun" || name == "deno") {
    auto title = rewrittenTitle(all, name);
    return Description{title ? std::move(*title) : scriptTitle(rest, name),
                       std::string(kServerSymbol)};
  }
  if (name.starts_with("python")) return pythonTool(rest);

  const bool saysRails = contain(rest, "rails");
  if (name == "ruby" || name == "rails" || name == "puma" ||
      (saysRails && contains(joined(rest), "rails server"))) {
    return Description{saysRails ? "Rails server" : "Ruby server", std::string(kServerSymbol)};
  }
  return toolByName(name);
}

std::string ForgottenFinder::scriptTitle(Arguments arguments, std::string_view runtime) {
  // The script and what decides about its name: nothing behind the third tells anything.
  std::array<std::string_view, 3> positional;
  std::size_t count = 0;
  for (const std::string& argument : arguments) {
    if (argument.empty() || isOption(argument)) continue;
    positional[count++] = argument;
    if (count == positional.size()) break;
  }
  if (count == 0) return std::string(runtime);

  std::string title(toolOf(positional.front()));
  if (isPackageRunner(title)) {
    for (std::size_t i = 1; i < count; ++i) title.append(" ").append(positional[i]);
    return title;
  }
  if (isScriptVerb(positional[1])) title.append(" ").append(positional[1]);
  const bool watches = std::any_of(arguments.begin(), arguments.end(), [](const auto& argument) {
    return argument == "--watch" || argument == "-w";
  });
  if (watches) title += " --watch";
  return title;
}

std::optional<std::string> ForgottenFinder::project(std::optional<std::string_view> directory,
                                                    std::string_view home) {
  if (!directory || *directory == "/" || *directory == home) return std::nullopt;
  std::string_view rest = *directory;
  std::string_view last;
  bool isPrivate = false;
  bool hasAgent = false;
  for (auto piece = takeComponent(rest); !piece.empty(); piece = takeComponent(rest)) {
    // An agent's worktree stands for the project that it was made from.
    if (piece == ".claude" && !std::exchange(hasAgent, true) && !last.empty()) {
      std::string_view behind = rest;
      if (takeComponent(behind) == "worktrees") return std::string(last) + " · agent worktree";
    }
    isPrivate = isPrivate || piece == "Library" || piece.starts_with('.');
    last = piece;
  }
  if (isPrivate || last.empty()) return std::nullopt;
  return std::string(last);
}

}  // namespace embrix
