// Command lines and sockets of developers' machines: what each is called, and why.
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/text.h"
#include "facts.h"
#include "fakes/captures.h"
#include "running/forgotten_finder.h"
#include "running/local_servers.h"

namespace embrix {
namespace {

struct CommandLine {
  const char* why;
  const char* name;
  std::vector<std::string> arguments;
  std::optional<std::string> title;
};

TEST(CommandLinesTest, AreCalledWhatTheirOwnersCallThem) {
  const std::vector<CommandLine> lines = {
      {"the program wrote its own title", "node", {"next-server (v16.2.9)"}, "next-server"},
      {"a title may be a whole command",
       "node",
       {"npm exec chrome-devtools-mcp@latest"},
       "npm exec chrome-devtools-mcp@latest"},
      {"a folder's name may end in a blank",
       "node",
       {"node", "/Applications/moon /node_modules/.bin/next", "dev", "--webpack"},
       "next dev"},
      {"a relative tool",
       "node",
       {"node", "node_modules/.bin/next", "dev", "-p", "3100"},
       "next dev"},
      {"a number is no verb",
       "node",
       {"node", "/w/app/node_modules/.bin/vite", "--port", "14521", "--strictPort"},
       "vite"},
      {"a script is no verb",
       "node",
       {"node", "/w/app/node_modules/.bin/tsx", "src/index.ts"},
       "tsx"},
      {"the value of an option counts as the script",
       "node",
       {"/opt/homebrew/bin/node", "--require", "/w/node_modules/tsx/dist/preflight.cjs",
        "src/a.ts"},
       "tsx"},
      {"a package's own file, and a word that is no verb",
       "node",
       {"/opt/fnm/bin/node", "/w/node_modules/wrangler/bin/wrangler.js", "pages", "dev", "dist"},
       "wrangler"},
      {"a daemon deep inside its package",
       "node",
       {"/opt/homebrew/bin/node", "/repo/node_modules/nx/src/daemon/server/start.js"},
       "nx"},
      {"a scope without its package",
       "node",
       {"/opt/homebrew/bin/node", "--inspect=localhost:9229", "/repo/node_modules/@nx/js/src/run"},
       "@nx"},
      {"a cache of packages is a package folder too",
       "node",
       {"node", "/u/.npm/_npx/abc/node_modules/.bin/chrome-devtools-mcp"},
       "chrome-devtools-mcp"},
      {"a helper of a tool has no name of its own",
       "esbuild",
       {"/w/node_modules/@esbuild/darwin-arm64/bin/esbuild", "--service=0.27.3", "--ping"},
       std::nullopt},
      {"nor has one that serves",
       "workerd",
       {"/w/node_modules/@cloudflare/workerd-darwin-arm64/bin/workerd", "serve", "--binary"},
       std::nullopt},
      {"gradle's daemon names its class",
       "java",
       {"/opt/openjdk/bin/java", "-Xmx512m", "org.gradle.launcher.daemon.bootstrap.GradleDaemon",
        "9.3.1"},
       "Gradle daemon"},
      {"a jar of gradle's is not its daemon",
       "java",
       {"java", "-cp", "/u/.gradle/caches/gradle-daemon-main.jar", "com.example.Application"},
       std::nullopt},
      {"an emulator names its device",
       "qemu-system-aarch64",
       {"/sdk/emulator/qemu/qemu-system-aarch64", "-avd", "ACE_Pixel_API_34", "-port", "5554"},
       "Android emulator · ACE_Pixel_API_34"},
      {"without a screen as well",
       "qemu-system-aarch64-headless",
       {"/sdk/qemu-system-aarch64-headless", "-avd", "Pixel_9_Android_15_-07"},
       "Android emulator · Pixel_9_Android_15_-07"},
      {"a simulator is found by other rules",
       "launchd_sim",
       {"launchd_sim", "/u/CoreSimulator/Devices/171CB1CD-0000-4000-8000-2D99F7A8FA8E/data"},
       std::nullopt},
      {"docker's engine",
       "com.docker.backend",
       {"/Applications/Docker.app/Contents/MacOS/com.docker.backend", "services"},
       "Docker VM"},
      {"docker's machine",
       "com.docker.virtualization",
       {"com.docker.virtualization", "--kernel", "/linuxkit/kernel"},
       "Docker VM"},
      {"a database is known by its port alone",
       "redis-server",
       {"redis-server *:6379"},
       std::nullopt},
      {"an agent", "claude", {"claude", "--output-format", "stream-json"}, "Claude Code"},
      {"a build in a shell", "make", {"make", "integration-test-backend"}, std::nullopt},
  };
  for (const CommandLine& line : lines) {
    const auto description = ForgottenFinder::describe(
        facts({.pid = 10, .arguments = line.arguments, .name = std::string(line.name)}));
    EXPECT_EQ(description ? std::optional(description->title) : std::nullopt, line.title)
        << line.why;
  }
}

// A line of `ps` as a process. Such a line has lost where one argument ends: a script below
// "node_modules" is taken to reach to the next blank behind that folder.
ProcessFacts processOf(const std::string& line) {
  std::size_t end = line.find(' ');
  const std::string program = line.substr(0, end);
  const std::string name(Text::lastPiece(program, '/'));
  if (name == "next-server" || name == "npm") {
    return facts({.pid = 10, .arguments = {line}, .name = "node"});
  }
  Told told{.pid = 10, .arguments = {program}, .name = name};
  while (end != std::string::npos) {
    const std::size_t start = end + 1;
    const bool isScript = name == "node" && told.arguments.size() == 1 && line[start] == '/';
    const std::size_t folder = isScript ? line.find("/node_modules/", start) : std::string::npos;
    end = line.find(' ', folder == std::string::npos ? start : folder);
    told.arguments.push_back(line.substr(start, end == std::string::npos ? end : end - start));
  }
  return facts(told);
}

// Written by hand in the shape of a capture.
constexpr std::string_view kCommandLines = R"(next-server (v15.5.14)
node /Applications/moon /node_modules/.bin/next dev --webpack
node /Users/dev/app/node_modules/.bin/vite --port 14521 --strictPort
/opt/homebrew/bin/node /repo/node_modules/nx/src/daemon/server/start.js
npm exec chrome-devtools-mcp@latest
/opt/openjdk/bin/java org.gradle.launcher.daemon.bootstrap.GradleDaemon 8.10.2
java -cp /Users/dev/.gradle/caches/gradle-daemon-main.jar com.example.Application
/sdk/qemu/qemu-system-aarch64 -avd ACE_Pixel_API_34 -port 5556 -read-only
/Applications/Docker.app/Contents/MacOS/com.docker.backend services
/opt/homebrew/opt/redis/bin/redis-server *:6379
claude --output-format stream-json --verbose
)";

TEST(CommandLinesTest, OfARealListing) {
  std::istringstream listing(captureOr("08_ps/dev_command_lines_one_per_line.txt", kCommandLines));
  std::map<std::string, int> met;
  for (std::string line; std::getline(listing, line);) {
    if (line.empty()) continue;
    const auto process = processOf(line);
    const auto description = ForgottenFinder::describe(process);
    const std::string title = description ? description->title : "";
    if (line.starts_with("next-server")) {
      EXPECT_EQ(title, "next-server") << line;
    } else if (line.starts_with("npm exec")) {
      EXPECT_EQ(title, line);
    } else if (line.find("GradleDaemon") != std::string::npos) {
      EXPECT_EQ(title, "Gradle daemon") << line;
    } else if (const auto avd = line.find(" -avd "); avd != std::string::npos) {
      const std::string device = line.substr(avd + 6);
      EXPECT_EQ(title, "Android emulator · " + device.substr(0, device.find(' '))) << line;
    } else if (process.name == "node") {
      const std::size_t binary = line.find("/.bin/");
      if (binary != std::string::npos) {
        const std::string tool = line.substr(binary + 6);
        EXPECT_TRUE(title.starts_with(tool.substr(0, tool.find(' ')))) << line << " → " << title;
      } else {
        EXPECT_NE(title, "node") << line;
      }
      EXPECT_EQ(title.find('/'), std::string::npos) << line;
    } else if (process.name == "claude") {
      EXPECT_EQ(title, "Claude Code") << line;
    } else if (process.name.view().starts_with("com.docker")) {
      EXPECT_EQ(title, "Docker VM") << line;
    } else {
      EXPECT_EQ(title, "") << line;
    }
    met[title.empty() ? "nothing" : process.name.string()] += 1;
  }
  for (const char* kind :
       {"node", "java", "qemu-system-aarch64", "claude", "com.docker.backend", "nothing"}) {
    EXPECT_GT(met[kind], 0) << kind;
  }
}

// The processes of a listing of listening sockets, "COMMAND PID USER … TCP address:port (LISTEN)".
std::vector<ProcessFacts> listenersOf(const std::string& listing) {
  std::map<std::string, ProcessFacts> byPID;
  std::istringstream lines(listing);
  for (std::string line; std::getline(lines, line);) {
    const auto words = Text::split(line, ' ');
    if (words.size() < 3 || words.back() != "(LISTEN)") continue;
    const std::string_view address = words[words.size() - 2];
    ProcessFacts& process = byPID[std::string(words[1])];
    process.pid = std::stoi(std::string(words[1]));
    process.name = std::string(words[0]);
    process.uid = words[2] == "developeruser" ? kUser : 0;
    const std::size_t colon = address.rfind(':');
    const int port = std::stoi(std::string(address.substr(colon + 1)));
    if (testing::Value(process.ports, testing::Contains(port))) continue;
    process.ports.push_back(port);
    if (!address.starts_with("127.") && !address.starts_with("[::1]")) {
      process.exposedPorts.push_back(port);
    }
  }
  std::vector<ProcessFacts> processes;
  for (auto& [pid, process] : byPID) {
    std::sort(process.ports.begin(), process.ports.end());
    processes.push_back(process);
  }
  return processes;
}

// Written by hand in the shape of a capture.
constexpr std::string_view kListeners =
    R"(COMMAND     PID           USER   FD   TYPE             DEVICE SIZE/OFF NODE NAME
launchd       1           root   33u  IPv6 0x1      0t0  TCP [::1]:8021 (LISTEN)
mysqld      791         _mysql   20u  IPv6 0x2      0t0  TCP *:3306 (LISTEN)
mongod     1311  developeruser    9u  IPv4 0x3      0t0  TCP 127.0.0.1:27017 (LISTEN)
mongod     1311  developeruser   10u  IPv6 0x4      0t0  TCP [::1]:27017 (LISTEN)
redis-ser  1316  developeruser   12u  IPv4 0x5      0t0  TCP 127.0.0.1:6379 (LISTEN)
postgres   1324  developeruser    7u  IPv6 0x6      0t0  TCP [::1]:5432 (LISTEN)
Python    74320  developeruser   12u  IPv4 0x7      0t0  TCP *:8000 (LISTEN)
node      86800  developeruser   13u  IPv6 0x8      0t0  TCP *:3000 (LISTEN)
)";

struct Listener {
  const char* title;
  int port;
  bool isExposed;
};

TEST(CommandLinesTest, ListenersOfARealMachine) {
  const auto servers = LocalServers::find(
      listenersOf(captureOr("09_lsof/mac_dev_mysql_mongo_redis_cursor_sudo.txt", kListeners)),
      kUser, "/Users/developeruser");
  const std::vector<Listener> expected = {{"node", 3000, true},
                                          {"postgres", 5432, false},
                                          {"redis-ser", 6379, false},
                                          {"Python", 8000, true},
                                          {"mongod", 27017, false}};
  auto next = expected.begin();
  for (const LocalServer& server : servers) {
    EXPECT_NE(server.title, "mysqld");
    EXPECT_NE(server.title, "launchd");
    if (next == expected.end() || server.title != next->title) continue;
    EXPECT_EQ(server.ports, std::vector<int>{next->port}) << server.title;
    EXPECT_EQ(!server.process.exposedPorts.empty(), next->isExposed) << server.title;
    ++next;
  }
  EXPECT_EQ(next, expected.end()) << "not listed in order of the ports: " << next->title;
}

}  // namespace
}  // namespace embrix
