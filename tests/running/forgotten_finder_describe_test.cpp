#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "facts.h"
#include "running/forgotten_finder.h"

namespace embrix {
namespace {

using Arguments = std::vector<std::string>;

struct Named {
  const char* label;
  const char* name;
  Arguments arguments;  // the program first
  std::optional<ForgottenFinder::Description> expected;
};

void expectAll(const std::vector<Named>& cases) {
  for (const Named& told : cases) {
    const auto process =
        facts({.pid = 10, .arguments = told.arguments, .name = std::string(told.name)});
    const auto description = ForgottenFinder::describe(process);
    ASSERT_EQ(description.has_value(), told.expected.has_value()) << told.label;
    if (!description) continue;
    EXPECT_EQ(description->title, told.expected->title) << told.label;
    EXPECT_EQ(description->symbol, told.expected->symbol) << told.label;
  }
}

TEST(DescribeTest, EmulatorsAndVirtualMachines) {
  expectAll({
      {"a named device",
       "qemu-system-aarch64",
       {"q", "-avd", "Pixel_8"},
       {{"Android emulator · Pixel_8", "iphone.gen3"}}},
      {"headless, in capitals",
       "QEMU-system-aarch64-headless",
       {"q", "-no-window", "-avd", "P"},
       {{"Android emulator · P", "iphone.gen3"}}},
      {"no device behind the option",
       "qemu-system-x86_64",
       {"q", "-avd"},
       {{"QEMU virtual machine", "server.rack"}}},
      {"the program's own name is no argument",
       "qemu-system-x86_64",
       {"-avd", "P"},
       {{"QEMU virtual machine", "server.rack"}}},
      {"no arguments", "qemu-system-arm", {}, {{"QEMU virtual machine", "server.rack"}}},
      {"another qemu tool", "qemu-img", {"q", "-avd", "P"}, std::nullopt},
  });
}

TEST(DescribeTest, JavaIsNamedForItsDaemonsOnly) {
  expectAll({
      {"gradle", "java", {"java", "org.gradle.GradleDaemon", "8"}, {{"Gradle daemon", "hammer"}}},
      {"kotlin", "java", {"java", "x.KotlinCompileDaemon"}, {{"Kotlin daemon", "hammer"}}},
      {"kotlin by its jar", "java", {"java", "kotlin-daemon.jar"}, {{"Kotlin daemon", "hammer"}}},
      {"both: gradle first",
       "Java",
       {"java", "kotlin-daemon", "GradleDaemon"},
       {{"Gradle daemon", "hammer"}}},
      {"a gradle jar is no daemon", "java", {"java", "gradle-daemon-main.jar"}, std::nullopt},
      {"in the program's own name it does not count", "java", {"GradleDaemon"}, std::nullopt},
      {"no later rule is asked", "java", {"java", "rails server"}, std::nullopt},
      {"no arguments", "java", {}, std::nullopt},
  });
}

TEST(DescribeTest, RuntimesAreNamedForTheirScript) {
  expectAll({
      {"a script", "node", {"node", "server.js"}, {{"server.js", "server.rack"}}},
      {"in capitals", "Node", {"node", "server.js"}, {{"server.js", "server.rack"}}},
      {"bun", "bun", {"bun", "/w/index.ts"}, {{"index.ts", "server.rack"}}},
      {"deno", "deno", {"deno", "run", "x.ts"}, {{"run", "server.rack"}}},
      {"a bare runtime", "node", {"/opt/bin/node"}, {{"node", "server.rack"}}},
      {"a bare runtime in capitals", "Deno", {"Deno"}, {{"deno", "server.rack"}}},
      {"no arguments", "node", {}, {{"node", "server.rack"}}},
      {"options alone", "node", {"node", "--inspect"}, {{"node", "server.rack"}}},
      {"a longer name is no runtime", "nodemon", {"nodemon", "x.js"}, std::nullopt},
  });
}

TEST(DescribeTest, ATitleThatARuntimeWroteOverItsCommandLineCounts) {
  expectAll({
      {"with a version", "node", {"next-server (v15.1.0)"}, {{"next-server", "server.rack"}}},
      {"blank ones behind it", "node", {"next-server", "", ""}, {{"next-server", "server.rack"}}},
      {"several words", "node", {"npm run dev"}, {{"npm run dev", "server.rack"}}},
      {"only the first bracket cuts", "node", {"a (b) (c)"}, {{"a", "server.rack"}}},
      {"a bracket without a blank stays", "node", {"a(b)"}, {{"a(b)", "server.rack"}}},
      {"the runtime's own path", "node", {"/opt/bin/node"}, {{"node", "server.rack"}}},
      {"begins like the runtime", "node", {"NODE-thing"}, {{"node", "server.rack"}}},
      {"an empty title", "node", {""}, {{"node", "server.rack"}}},
      {"an argument that is not empty decides",
       "node",
       {"next-server (v1)", "x.js"},
       {{"x.js", "server.rack"}}},
      {"even when it is a space", "node", {"next-server", " "}, {{" ", "server.rack"}}},
  });
}

TEST(DescribeTest, PythonIsNamedForItsModuleOrScript) {
  expectAll({
      {"a module",
       "python3",
       {"python3", "-m", "http.server"},
       {{"python http.server", "server.rack"}}},
      {"a script",
       "python3",
       {"python3", "manage.py", "runserver"},
       {{"python manage.py", "server.rack"}}},
      {"a script's path",
       "Python",
       {"Python", "-u", "/w/app.py"},
       {{"python app.py", "server.rack"}}},
      {"the module wins", "python3.12", {"p", "a.py", "-m", "b"}, {{"python b", "server.rack"}}},
      {"no module behind the option", "python", {"p", "-m"}, std::nullopt},
      {"a script ahead of a bare option",
       "python",
       {"p", "a.py", "-m"},
       {{"python a.py", "server.rack"}}},
      {"options alone", "python", {"p", "-i"}, std::nullopt},
      {"nothing", "python", {"p"}, std::nullopt},
      {"no later rule is asked", "python", {"p", "-rails server"}, std::nullopt},
      {"a folder", "python", {"p", "/w/app/"}, {{"python app", "server.rack"}}},
      {"the root folder", "python", {"p", "/"}, {{"python /", "server.rack"}}},
  });
}

TEST(DescribeTest, RubyAndRails) {
  expectAll({
      {"ruby", "ruby", {"ruby", "app.rb"}, {{"Ruby server", "server.rack"}}},
      {"ruby runs rails", "ruby", {"ruby", "bin/rails", "s"}, {{"Rails server", "server.rack"}}},
      {"rails without arguments", "rails", {"rails"}, {{"Ruby server", "server.rack"}}},
      {"puma", "puma", {"puma", "5.6"}, {{"Ruby server", "server.rack"}}},
      {"by its arguments alone", "foo", {"foo", "rails server"}, {{"Rails server", "server.rack"}}},
      {"across two arguments",
       "foo",
       {"foo", "bin/rails", "server"},
       {{"Rails server", "server.rack"}}},
      {"an argument between", "foo", {"foo", "rails", "", "server"}, std::nullopt},
      {"ahead of the tools by name",
       "claude",
       {"claude", "rails server"},
       {{"Rails server", "server.rack"}}},
      {"ruby with a version is no name known", "ruby3.1", {"ruby3.1", "app.rb"}, std::nullopt},
  });
}

TEST(DescribeTest, ToolsByTheirName) {
  expectAll({
      {"claude", "claude", {}, {{"Claude Code", "sparkles"}}},
      {"claude in capitals", "Claude", {}, {{"Claude Code", "sparkles"}}},
      {"codex", "codex", {}, {{"Codex", "sparkles"}}},
      {"orbstack anywhere in it", "OrbStack Helper", {}, {{"OrbStack VM", "shippingbox"}}},
      {"docker's own", "com.docker.backend", {}, {{"Docker VM", "shippingbox"}}},
      {"docker", "docker", {}, {{"Docker VM", "shippingbox"}}},
      {"another docker", "dockerd", {}, std::nullopt},
      {"virtualization",
       "com.apple.Virtualization.VirtualMachine",
       {},
       {{"Virtual machine", "shippingbox"}}},
      {"adb",
       "adb",
       {"adb", "-L", "tcp:5037"},
       {{"Android debug bridge (adb)", "cable.connector"}}},
      {"a simulator's root", "launchd_sim", {}, std::nullopt},
      {"anything else", "redis-server", {"redis-server", "*:6379"}, std::nullopt},
      {"nothing", "", {}, std::nullopt},
  });
}

TEST(DescribeTest, WildBytesInANameAreNoName) {
  expectAll(
      {{"ill-formed", "\xff\xfenode", {}, std::nullopt},
       {"ill-formed behind", "python\xff", {"p", "a\xff.py"}, {{"python a\xff.py", "server.rack"}}},
       {"other alphabets", "Ö-ORBSTACK-ß", {}, {{"OrbStack VM", "shippingbox"}}}});
}

struct Script {
  const char* label;
  Arguments arguments;
  const char* expected;
};

TEST(ScriptTitleTest, TellsToolAndVerb) {
  const std::vector<Script> cases = {
      {"nothing", {}, "node"},
      {"empty ones and options", {"", "--inspect", "-r"}, "node"},
      {"a script", {"/w/server.js"}, "server.js"},
      {"options stand aside", {"--inspect=9229", "/w/server.js"}, "server.js"},
      {"a tool's binary", {"/w/node_modules/.bin/vite", "dev"}, "vite dev"},
      {"a folder that ends in a blank", {"/w/moon /node_modules/.bin/next", "dev"}, "next dev"},
      {"a package's file", {"/w/node_modules/vite/bin/vite.js"}, "vite"},
      {"a scope shows", {"/w/node_modules/@nx/js/src/node"}, "@nx"},
      {"the innermost package", {"/w/node_modules/a/node_modules/b/c.js"}, "b"},
      {"the innermost is a binary", {"/w/node_modules/a/node_modules/.bin/c"}, "c"},
      {"nothing behind the folder", {"/w/node_modules/"}, "node_modules"},
      {"a relative folder is no package", {"node_modules/.bin/next", "dev"}, "next dev"},
      {"npm's own file", {"/opt/lib/npm-cli.js", "run", "dev"}, "npm run dev"},
      {"npm's package", {"/opt/node_modules/npm/bin/npm-cli.js", "run", "dev"}, "npm run dev"},
      {"npm's file inside a package", {"/opt/node_modules/x/npm-cli.js", "run"}, "x"},
      {"npm alone", {"npm"}, "npm"},
      {"npm takes two words", {"npm", "run", "dev", "extra"}, "npm run dev"},
      {"npm and a watching script", {"npm", "run", "--watch"}, "npm run"},
      {"pnpm", {"/opt/bin/pnpm", "--filter", "web", "dev"}, "pnpm web dev"},
      {"yarn", {"/opt/bin/yarn", "start"}, "yarn start"},
      {"yarn's file is no yarn", {"/opt/bin/yarn.js", "start"}, "yarn.js start"},
      {"every verb: start", {"a", "start"}, "a start"},
      {"every verb: serve", {"a", "serve"}, "a serve"},
      {"every verb: watch", {"a", "watch"}, "a watch"},
      {"every verb: preview", {"a", "preview"}, "a preview"},
      {"no verb", {"a", "build"}, "a"},
      {"the verb comes first", {"a", "x", "dev"}, "a"},
      {"watching", {"/w/node_modules/.bin/tsc", "--watch"}, "tsc --watch"},
      {"watching, in short", {"tsc", "-w"}, "tsc --watch"},
      {"watching ahead of the script", {"--watch", "server.js"}, "server.js --watch"},
      {"verb and watching", {"a", "dev", "-w"}, "a dev --watch"},
      {"a slash alone", {"/"}, "/"},
      {"slashes behind", {"/w/app//"}, "app"},
  };
  for (const Script& script : cases) {
    EXPECT_EQ(ForgottenFinder::scriptTitle(script.arguments, "node"), script.expected)
        << script.label;
  }
}

struct Folder {
  const char* label;
  std::optional<std::string> directory;
  std::optional<std::string> expected;
};

TEST(ProjectTest, IsTheFoldersNameUnlessItIsNobodysProject) {
  const std::vector<Folder> cases = {
      {"unknown", std::nullopt, std::nullopt},
      {"the root folder", "/", std::nullopt},
      {"slashes alone", "//", std::nullopt},
      {"nothing", "", std::nullopt},
      {"the home folder", "/Users/me", std::nullopt},
      {"a folder", "/Users/me/code/shop", "shop"},
      {"a slash behind", "/Users/me/code/shop/", "shop"},
      {"a blank behind", "/Users/me/code/shop ", "shop "},
      {"outside the home folder", "/srv/www", "www"},
      {"a worktree of an agent", "/Users/me/code/app/.claude/worktrees/fix-1",
       "app · agent worktree"},
      {"the worktrees' folder", "/Users/me/code/app/.claude/worktrees", "app · agent worktree"},
      {"inside a worktree", "/u/app/.claude/worktrees/x/.next/y", "app · agent worktree"},
      {"a worktree in a hidden folder", "/u/.cache/app/.claude/worktrees/x",
       "app · agent worktree"},
      {"a worktree without a project", "/.claude/worktrees/x", std::nullopt},
      {"an agent's other folder", "/u/app/.claude/skills", std::nullopt},
      {"an agent's folder", "/u/app/.claude", std::nullopt},
      {"only the first counts", "/u/.claude/x/.claude/worktrees/y", std::nullopt},
      {"application support", "/Users/me/Library/Application Support/x", std::nullopt},
      {"a hidden folder", "/Users/me/.config/x", std::nullopt},
      {"a hidden last folder", "/Users/me/code/.x", std::nullopt},
      {"a library that is written otherwise", "/Users/me/library/x", "x"},
      {"wild bytes", "/Users/me/\xff\xfe", "\xff\xfe"},
  };
  for (const Folder& folder : cases) {
    EXPECT_EQ(ForgottenFinder::project(folder.directory, kHome), folder.expected) << folder.label;
  }
}

}  // namespace
}  // namespace embrix
