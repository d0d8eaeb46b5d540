#include "running/system_folders.h"

#include <gtest/gtest.h>

#include "facts.h"
#include "running/forgotten_finder.h"
#include "running/local_servers.h"

namespace embrix {
namespace {

TEST(SystemFoldersTest, MacOSIsTheDefault) {
  const SystemFolders folders;
  EXPECT_EQ(folders.folders,
            (std::vector<std::string>{"/System/", "/usr/", "/Library/Apple/", "/sbin/", "/bin/"}));
  EXPECT_EQ(folders.candidateFolders, (std::vector<std::string>{"/System/", "/usr/"}));
  for (const char* host : {"macos", "", "Linux", "windows"}) {
    EXPECT_EQ(SystemFolders::forHost(host).folders, folders.folders) << host;
    EXPECT_TRUE(SystemFolders::forHost(host).userPrograms.empty()) << host;
  }
}

TEST(SystemFoldersTest, MacOSAsksAfterCandidatesInFewerFolders) {
  const SystemFolders folders;
  EXPECT_TRUE(folders.holdCandidate("/System/x"));
  EXPECT_TRUE(folders.holdCandidate("/usr/local/bin/node"));
  EXPECT_FALSE(folders.holdCandidate("/Library/Apple/x"));
  EXPECT_FALSE(folders.holdCandidate("/bin/x"));
  EXPECT_FALSE(folders.holdCandidate("/Users/me/usr/x"));
  EXPECT_TRUE(folders.hold(facts({.pid = 10, .path = "/Library/Apple/x"})));
  EXPECT_TRUE(folders.hold(facts({.pid = 10, .path = "/bin/x"})));
}

TEST(SystemFoldersTest, AProcessWithoutAPathIsNotTheSystems) {
  EXPECT_FALSE(SystemFolders().hold(facts({.pid = 10, .name = "x"})));
  EXPECT_FALSE(SystemFolders::forHost("linux").hold(facts({.pid = 10, .name = "x"})));
}

struct Place {
  const char* path;
  bool isSystems;
};

TEST(SystemFoldersTest, LinuxTellsToolsFromTheDistributionByTheirNames) {
  const std::vector<Place> places = {
      // The developer's, wherever they come from.
      {"/usr/bin/node", false},
      {"/usr/bin/node-20", false},
      {"/usr/local/bin/node", false},
      {"/usr/local/sbin/anything", false},
      {"/home/me/.nvm/versions/node/v20.11.0/bin/node", false},
      {"/home/me/.local/share/fnm/node-versions/v22.1.0/installation/bin/node", false},
      {"/home/linuxbrew/.linuxbrew/Cellar/node/21.6.1/bin/node", false},
      {"/opt/node/bin/node", false},
      {"/snap/node/8400/bin/node", false},
      {"/nix/store/abc-nodejs-20.11.0/bin/node", false},
      {"/usr/bin/python3.11", false},
      {"/usr/bin/ruby3.1", false},
      {"/usr/bin/php8.2", false},
      {"/usr/lib/jvm/java-17-openjdk-amd64/bin/java", false},
      {"/usr/lib/erlang/erts-13.1.5/bin/beam.smp", false},
      {"/usr/share/dotnet/dotnet", false},
      {"/usr/bin/qemu-system-x86_64", false},
      {"/usr/lib/android-sdk/platform-tools/adb", false},
      {"/usr/lib/postgresql/15/bin/postgres", false},
      {"/usr/bin/redis-server", false},
      {"/usr/libexec/podman/rootlessport", false},
      {"/home/me/bin/sshd", false},
      // The distribution's.
      {"/usr/sbin/sshd", true},
      {"/usr/lib/systemd/systemd", true},
      {"/lib/systemd/systemd", true},
      {"/usr/bin/dbus-daemon", true},
      {"/usr/bin/gnome-shell", true},
      {"/usr/libexec/gnome-remote-desktop-daemon", true},
      {"/usr/libexec/gvfsd", true},
      {"/usr/bin/gjs-console", true},
      {"/usr/bin/plasmashell", true},
      {"/usr/lib/x86_64-linux-gnu/libexec/kdeconnectd", true},
      {"/usr/bin/pipewire", true},
      {"/usr/bin/ssh-agent", true},
      {"/sbin/init", true},
      {"/bin/cat", true},
      {"/lib64/ld-linux-x86-64.so.2", true},
      {"/nix/store/abc-openssh-9.6/bin/sshd", true},
      {"/gnu/store/abc-openssh/sbin/sshd", true},
      {"/snap/snapd-desktop-integration/83/bin/snapd-desktop-integration", true},
      {"/var/lib/flatpak/app/x/files/bin/x", true},
      {"/app/bin/spotify", true},
      {"/usr/share/code/code", true},
      // Names that only begin like a tool's.
      {"/usr/bin/node_exporter", true},
      {"/usr/bin/nginx-debug", true},
      {"/usr/bin/pythonista", true},
      {"/usr/bin/qemu-img", true},
      {"/usr/bin/", true},
  };
  const auto linux = SystemFolders::forHost("linux");
  for (const Place& place : places) {
    EXPECT_EQ(linux.holdCandidate(place.path), place.isSystems) << place.path;
    EXPECT_EQ(linux.hold(facts({.pid = 10, .path = place.path, .ports = {80}})), place.isSystems)
        << place.path;
  }
}

struct Script {
  const char* label;
  std::vector<std::string> arguments;
  std::vector<int> ports;
  bool isSystems;
};

TEST(SystemFoldersTest, LinuxLeavesTheSessionsOwnScriptsOut) {
  const std::vector<Script> scripts = {
      {"an applet", {"/usr/bin/python3", "/usr/bin/blueman-applet"}, {}, true},
      {"an applet behind options", {"python3", "-u", "-O", "/usr/share/x/applet.py"}, {}, true},
      {"a packaged tool that listens", {"python3", "/usr/bin/jupyter-lab"}, {8888}, false},
      {"a project's script", {"python3", "manage.py", "runserver"}, {}, false},
      {"a script in the home folder", {"python3", "/home/me/app.py"}, {}, false},
      {"a script of the administrator", {"python3", "/usr/local/bin/app"}, {}, false},
      {"a module", {"python3", "-m", "/usr/lib/x"}, {}, false},
      {"nothing", {}, {}, false},
      {"an empty argument", {"python3", ""}, {}, false},
  };
  const auto linux = SystemFolders::forHost("linux");
  for (const Script& script : scripts) {
    const auto process = facts({.pid = 10,
                                .path = "/usr/bin/python3.11",
                                .arguments = script.arguments,
                                .ports = script.ports});
    EXPECT_EQ(linux.hold(process), script.isSystems) << script.label;
  }
}

TEST(SystemFoldersTest, LinuxLetsARuntimeRunAPackagedScript) {
  const auto npm = facts(
      {.pid = 10, .path = "/usr/bin/node", .arguments = {"node", "/usr/bin/npm", "run", "dev"}});
  EXPECT_FALSE(SystemFolders::forHost("linux").hold(npm));
}

TEST(SystemFoldersTest, TheRulesGoByTheListThatTheyAreHanded) {
  const auto linux = SystemFolders::forHost("linux");
  const auto node = facts(
      {.pid = 10, .path = "/usr/bin/node", .arguments = {"node", "server.js"}, .ports = {3000}});
  const auto sshd = facts({.pid = 11, .path = "/usr/sbin/sshd", .ports = {6010}});
  EXPECT_EQ(titlesOf(ForgottenFinder::find({node, sshd}, kUser, "/home/me", linux)),
            std::vector<std::string>{"server.js"});
  EXPECT_TRUE(ForgottenFinder::find({node, sshd}, kUser, "/home/me").empty());

  const auto servers = LocalServers::find({node, sshd}, kUser, "/home/me", linux);
  ASSERT_EQ(servers.size(), 1U);
  EXPECT_EQ(servers[0].title, "server.js");
  EXPECT_TRUE(LocalServers::find({node, sshd}, kUser, "/home/me").empty());
}

}  // namespace
}  // namespace embrix
