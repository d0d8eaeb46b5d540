#include "sampling/app_icon.h"

#include <optional>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

class AppIconTest : public testing::Test {
 protected:
  ScriptedHost world;
  Host host = world.host();
  std::set<std::string> files;
  AppIcon icon{*host.applications,
               [this](const std::string& path) { return files.contains(path); }};

  void install(const char* identifier, const char* path) {
    world.applicationPaths[identifier] = path;
  }
};

TEST_F(AppIconTest, ExecutableInABundleHasItsOutermostBundle) {
  EXPECT_EQ(icon.appPath("Docker", "/Apps/A.app/Contents/B.app/Contents/MacOS/B"), "/Apps/A.app");
}

TEST_F(AppIconTest, NameOfTheTableHasItsApplication) {
  install("com.apple.dt.Xcode", "/Applications/Xcode.app");
  EXPECT_EQ(icon.appPath("Swift compiler", "/usr/bin/swiftc"), "/Applications/Xcode.app");
  EXPECT_EQ(icon.appPath("swiftc", std::nullopt), "/Applications/Xcode.app");
}

TEST_F(AppIconTest, NameThatBeginsLikeAKnownOneHasItsApplication) {
  const struct {
    const char* name;
    const char* identifier;
  } cases[] = {
      {"Android Studio 2", "com.google.android.studio"},
      {"Gradle daemon", "com.google.android.studio"},
      {"Kotlin daemon", "com.google.android.studio"},
      {"iOS Simulator (iPhone 15)", "com.apple.iphonesimulator"},
      {"OrbStack Helper", "dev.kdrag0n.MacVirt"},
      {"Docker Desktop", "com.docker.docker"},
      {"Claude Code", "com.anthropic.claudefordesktop"},
  };
  for (const auto& [name, identifier] : cases) install(identifier, identifier);
  for (const auto& [name, identifier] : cases) {
    EXPECT_EQ(icon.appPath(name, std::nullopt), identifier) << name;
  }
}

TEST_F(AppIconTest, UnknownNameHasNone) {
  install("com.docker.docker", "/Applications/Docker.app");
  EXPECT_EQ(icon.appPath("node", "/usr/local/bin/node"), std::nullopt);
  EXPECT_EQ(icon.appPath("docker", std::nullopt), std::nullopt);
  EXPECT_EQ(icon.appPath("My Docker", std::nullopt), std::nullopt);
  EXPECT_EQ(icon.appPath("macOS kernel", std::nullopt), std::nullopt);
  EXPECT_EQ(icon.appPath("", std::nullopt), std::nullopt);
}

TEST_F(AppIconTest, ApplicationThatIsNotInstalledHasNone) {
  EXPECT_EQ(icon.appPath("Docker", std::nullopt), std::nullopt);
}

TEST_F(AppIconTest, SimulatorIsFoundInsideXcode) {
  const std::string inside =
      "/Applications/Xcode.app/Contents/Developer/Applications/Simulator.app";
  install("com.apple.dt.Xcode", "/Applications/Xcode.app");
  files.insert(inside);
  EXPECT_EQ(icon.appPath("iOS Simulator", std::nullopt), inside);
}

TEST_F(AppIconTest, SimulatorOfItsOwnGoesBeforeTheOneInsideXcode) {
  install("com.apple.iphonesimulator", "/Applications/Simulator.app");
  install("com.apple.dt.Xcode", "/Applications/Xcode.app");
  files.insert("/Applications/Xcode.app/Contents/Developer/Applications/Simulator.app");
  EXPECT_EQ(icon.appPath("iOS Simulator", std::nullopt), "/Applications/Simulator.app");
}

TEST_F(AppIconTest, SimulatorThatIsNotInsideXcodeHasNone) {
  install("com.apple.dt.Xcode", "/Applications/Xcode.app");
  EXPECT_EQ(icon.appPath("iOS Simulator", std::nullopt), std::nullopt);
}

TEST_F(AppIconTest, OnlyTheSimulatorIsLookedForInsideXcode) {
  install("com.apple.dt.Xcode", "/Applications/Xcode.app");
  files.insert("/Applications/Xcode.app/Contents/Developer/Applications/Simulator.app");
  EXPECT_EQ(icon.appPath("Docker", std::nullopt), std::nullopt);
}

TEST_F(AppIconTest, AnswersAreRememberedAbsenceToo) {
  EXPECT_EQ(icon.appPath("Docker", std::nullopt), std::nullopt);
  install("com.docker.docker", "/Applications/Docker.app");
  EXPECT_EQ(icon.appPath("Docker", std::nullopt), std::nullopt);
  EXPECT_EQ(icon.appPath("Docker", "/usr/bin/docker"), "/Applications/Docker.app");
  world.applicationPaths.clear();
  EXPECT_EQ(icon.appPath("Docker", "/usr/bin/docker"), "/Applications/Docker.app");
}

}  // namespace
}  // namespace embrix
