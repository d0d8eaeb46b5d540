#include "sampling/app_resolver.h"

#include <algorithm>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

class AppResolverTest : public testing::Test {
 protected:
  ScriptedHost world;
  Host host = world.host();
  AppResolver resolver{*host.applications};

  void install(const char* folder, ApplicationBundle bundle) {
    world.bundles[folder] = std::move(bundle);
  }
  std::string nameOf(const char* path) { return resolver.resolve(path).value().name.string(); }
};

constexpr const char* kExecutable = "/Applications/A.app/Contents/MacOS/A";

TEST_F(AppResolverTest, BundleTellsNameAndIdentifier) {
  install("/Applications/A.app",
          {.displayName = "Shown", .name = "Plain", .identifier = "com.example.A"});
  EXPECT_EQ(
      resolver.resolve(kExecutable),
      (AppInfo{.name = "Shown", .bundleID = "com.example.A", .bundlePath = "/Applications/A.app"}));
}

TEST_F(AppResolverTest, HelperInNestedBundlesBelongsToTheOutermost) {
  install("/Applications/A.app", {.displayName = "Outer", .name = {}, .identifier = {}});
  install("/Applications/A.app/Contents/Frameworks/B.app",
          {.displayName = "Inner", .name = {}, .identifier = {}});
  const auto app =
      resolver.resolve("/Applications/A.app/Contents/Frameworks/B.app/Contents/MacOS/B");
  ASSERT_TRUE(app);
  EXPECT_EQ(app->name, "Outer");
  EXPECT_EQ(app->bundlePath, SharedText("/Applications/A.app"));
}

TEST_F(AppResolverTest, PathOutsideAnyBundleHasNoApplication) {
  EXPECT_EQ(resolver.resolve("/usr/local/bin/node"), std::nullopt);
  EXPECT_EQ(resolver.resolve("/Applications/A.app"), std::nullopt);
  EXPECT_EQ(resolver.resolve(""), std::nullopt);
}

TEST_F(AppResolverTest, BundleThatCannotBeOpenedGoesByItsFolder) {
  EXPECT_EQ(resolver.resolve(kExecutable),
            (AppInfo{.name = "A", .bundleID = std::nullopt, .bundlePath = "/Applications/A.app"}));
}

TEST_F(AppResolverTest, NameIsTheDisplayNameThenTheBundleNameThenTheFolder) {
  install("/1.app", {.displayName = "Shown", .name = "Plain", .identifier = {}});
  install("/2.app", {.displayName = {}, .name = "Plain", .identifier = {}});
  install("/3.app", {.displayName = {}, .name = {}, .identifier = {}});
  EXPECT_EQ(nameOf("/1.app/x"), "Shown");
  EXPECT_EQ(nameOf("/2.app/x"), "Plain");
  EXPECT_EQ(nameOf("/3.app/x"), "3");
}

TEST_F(AppResolverTest, EverySuffixInTheFolderIsRemoved) {
  EXPECT_EQ(nameOf("/opt/My.apple.app/x"), "Myle");
  EXPECT_EQ(nameOf("/opt/A.app.app/x"), "A");
  EXPECT_EQ(nameOf("/opt/.ap.appp.app/x"), ".app");  // what only the removal joins stays
  EXPECT_EQ(nameOf("/opt/.app/x"), "");
}

TEST_F(AppResolverTest, FormatCharactersAreRemovedFromTheName) {
  install("/1.app", {.displayName = "\u200EWhats\u2060App", .name = {}, .identifier = {}});
  EXPECT_EQ(nameOf("/1.app/x"), "WhatsApp");
  EXPECT_EQ(nameOf("/\u200EMessages.app/x"), "Messages");
}

TEST_F(AppResolverTest, IllFormedTextsAreRepaired) {
  install("/1.app", {.displayName = "A\xff", .name = {}, .identifier = "com.\xff"});
  const auto app = resolver.resolve("/1.app/x");
  EXPECT_EQ(app->name, "A\uFFFD");
  EXPECT_EQ(app->bundleID, SharedText("com.\uFFFD"));
}

TEST_F(AppResolverTest, EmptyIdentifierIsNone) {
  install("/1.app", {.displayName = {}, .name = {}, .identifier = ""});
  EXPECT_EQ(resolver.resolve("/1.app/x")->bundleID, std::nullopt);
}

TEST_F(AppResolverTest, BundleIsOpenedOnceForAllOfItsExecutables) {
  install("/Applications/A.app", {.displayName = "Before", .name = {}, .identifier = {}});
  resolver.resolve(kExecutable);
  world.bundles["/Applications/A.app"].displayName = "After";
  EXPECT_EQ(nameOf(kExecutable), "Before");
  EXPECT_EQ(nameOf("/Applications/A.app/Contents/MacOS/Other"), "Before");
}

TEST_F(AppResolverTest, ExecutableIsResolvedOnceAMissAsWell) {
  EXPECT_EQ(resolver.byExecutable("/usr/bin/tool"), std::nullopt);
  world.applications["/usr/bin/tool"] = {.name = "Tool", .identifier = "tool", .path = "/t"};
  const std::size_t calls = world.log.size();
  EXPECT_EQ(resolver.byExecutable("/usr/bin/tool"), std::nullopt);
  EXPECT_EQ(world.log.size(), calls);
  EXPECT_TRUE(resolver.resolve("/usr/bin/tool"));
}

TEST_F(AppResolverTest, ExecutableOfAnInstalledApplicationIsKnownWithoutABundle) {
  world.applications["/usr/lib/firefox/firefox"] = {
      .name = "Firefox\u200B Web Browser",
      .identifier = "org.mozilla.firefox",
      .path = "/usr/share/applications/firefox.desktop"};
  const AppInfo expected{.name = "Firefox Web Browser",
                         .bundleID = "org.mozilla.firefox",
                         .bundlePath = "/usr/share/applications/firefox.desktop"};
  EXPECT_EQ(resolver.resolve("/usr/lib/firefox/firefox"), expected);
  EXPECT_EQ(resolver.byExecutable("/usr/lib/firefox/firefox"), expected);
}

TEST_F(AppResolverTest, BundleGoesBeforeAnInstalledApplication) {
  world.applications[kExecutable] = {.name = "Other", .identifier = "other", .path = "/o"};
  EXPECT_EQ(nameOf(kExecutable), "A");
}

}  // namespace
}  // namespace embrix
