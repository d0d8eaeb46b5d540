#include "cleanup/cleanup_catalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <fmt/format.h>

#include "fakes/captures.h"

namespace embrix {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using DeviceSupportFolder = CleanupCatalog::DeviceSupportFolder;
using UnavailableSimulator = CleanupCatalog::UnavailableSimulator;

constexpr std::string_view kPlistHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">";

std::string dictionary(const std::string& content) {
  return std::string(kPlistHead) + "<dict>" + content + "</dict></plist>";
}

constexpr std::string_view kInfo =
    "<key>LastAccessedDate</key><date>2026-09-06T15:39:21Z</date>"
    "<key>WorkspacePath</key><string>/Users/dev/src/App/App.xcworkspace</string>";

TEST(CleanupCatalogTest, ABuildFolderTellsItsWorkspaceAndLastUse) {
  const auto info = CleanupCatalog::derivedDataInfo(
      captureOr("07_xcode/deriveddata_info.plist", dictionary(std::string(kInfo))));
  ASSERT_TRUE(info);
  EXPECT_EQ(info->workspace, "/Users/dev/src/App/App.xcworkspace");
  EXPECT_EQ(info->lastAccessed, 1'788'709'161);
}

TEST(CleanupCatalogTest, ABuildFolderWithoutAWorkspaceTellsNothing) {
  const std::string date = "<key>LastAccessedDate</key><date>2026-09-06T15:39:21Z</date>";
  EXPECT_EQ(CleanupCatalog::derivedDataInfo(
                captureOr("07_xcode/deriveddata_info_no_workspacepath.plist", dictionary(date))),
            std::nullopt);
  const struct {
    std::string_view label;
    std::string data;
  } rows[] = {
      {"nothing", ""},
      {"no property list", "WorkspacePath = /x"},
      {"an array", std::string(kPlistHead) + "<array><string>/x</string></array></plist>"},
      {"a number", dictionary("<key>WorkspacePath</key><integer>5</integer>")},
      {"no path", dictionary("<key>WorkspacePath</key><string></string>")},
      {"a path from nowhere", dictionary("<key>WorkspacePath</key><string>a/b</string>")},
      {"broken off", dictionary(std::string(kInfo)).substr(0, 120)},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CleanupCatalog::derivedDataInfo(row.data), std::nullopt) << row.label;
  }
}

TEST(CleanupCatalogTest, ALastUseThatIsNoDateIsUnknown) {
  for (const std::string_view value :
       {"<string>today</string>", "<integer>7</integer>", "<true/>"}) {
    const auto info = CleanupCatalog::derivedDataInfo(
        dictionary("<key>WorkspacePath</key><string>/x/y.xcodeproj</string>"
                   "<key>LastAccessedDate</key>" +
                   std::string(value)));
    ASSERT_TRUE(info) << value;
    EXPECT_EQ(info->lastAccessed, std::nullopt) << value;
  }
}

TEST(CleanupCatalogTest, AProjectIsCalledByTheFirstNameThatTellsSomething) {
  const struct {
    std::string_view workspace, name;
  } rows[] = {
      {"/Users/me/recipe-box/ios/App.xcworkspace", "App (recipe-box)"},
      {"/Users/me/tidepool/Tidepool.xcworkspace", "Tidepool"},
      {"/Runner.xcworkspace", "Runner"},
      {"/ios/macOS/Runner.xcworkspace", "Runner"},
      {"/x/APP/iOS/Runner.xcodeproj", "Runner (x)"},
      {"/Users/me/my.project.xcodeproj", "my.project"},
      {"/Users/me/package", "package"},
      {"/Users/me/App.xcworkspace/", "App (me)"},
      {"/Users/me/.xcodeproj", ".xcodeproj"},
      {"/", ""},
      {"", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CleanupCatalog::projectName(row.workspace), row.name) << row.workspace;
  }
}

TEST(CleanupCatalogTest, EveryNameThatTellsNothingIsPassedOver) {
  for (const std::string_view name :
       {"app", "ios", "macos", "android", "project", "runner", "example", "apple", "xcode"}) {
    const std::string workspace = "/tidepool/" + std::string(name) + ".xcworkspace";
    EXPECT_EQ(CleanupCatalog::projectName(workspace), std::string(name) + " (tidepool)");
  }
}

TEST(CleanupCatalogTest, AHomeIsShortenedAtAWholeComponentAlone) {
  const struct {
    std::string_view path, home, expected;
  } rows[] = {
      {"/Users/me/src/App.xcworkspace", "/Users/me", "~/src"},
      {"/Users/me/App.xcworkspace", "/Users/me", "~"},
      {"/Users/melanie/x/App.xcworkspace", "/Users/me", "/Users/melanie/x"},
      {"/Users/melanie", "/Users/me", "/Users"},
      {"/Users/me/src/app", "/Users/me/", "~/src"},
      {"/opt/app", "/Users/me", "/opt"},
      {"/app", "/Users/me", "/"},
      {"/Users/me/a//b/c", "/Users/me", "~/a//b"},
      {"/Users/me/src/app", "", "/Users/me/src"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CleanupCatalog::shortPath(row.path, row.home), row.expected) << row.path;
  }
}

TEST(CleanupCatalogTest, SharedFoldersHaveNames) {
  const struct {
    std::string_view folder, name;
  } rows[] = {
      {"ModuleCache.noindex", "Module cache"},
      {"CompilationCache.noindex", "Compilation cache"},
      {"SDKStatCaches.noindex", "SDK caches"},
      {"SDKExplicitPrecompiledModules", "Precompiled SDK modules"},
      {"Symbols.noindex", "Symbols"},
      {"a.noindex.b.noindex", "a.b"},
      {"Anything", "Anything"},
      {"", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CleanupCatalog::sharedCacheName(row.folder), row.name) << row.folder;
  }
}

TEST(CleanupCatalogTest, ADeviceSupportFolderIsTakenApart) {
  const struct {
    std::string_view folder, platform;
    std::optional<DeviceSupportFolder> expected;
  } rows[] = {
      {"iPhone15,2 17.4.1 (21E236)", "iOS DeviceSupport",
       DeviceSupportFolder{"iOS", "iPhone15,2", "17.4.1", "21E236"}},
      {"17.4.1 (21E236)", "iOS DeviceSupport",
       DeviceSupportFolder{"iOS", std::nullopt, "17.4.1", "21E236"}},
      {"iPhone15,2 17.4.1", "iOS DeviceSupport",
       DeviceSupportFolder{"iOS", "iPhone15,2", "17.4.1", std::nullopt}},
      {"Watch7,2 11.6 (22U80)", "watchOS DeviceSupport",
       DeviceSupportFolder{"watchOS", "Watch7,2", "11.6", "22U80"}},
      {"Xcode Cache", "iOS DeviceSupport", std::nullopt},
      {"Xcode Cache (1)", "iOS DeviceSupport", std::nullopt},
      {"17.4", " DeviceSupport", DeviceSupportFolder{"iOS", std::nullopt, "17.4", std::nullopt}},
      {"17.4", "DeviceSupport",
       DeviceSupportFolder{"DeviceSupport", std::nullopt, "17.4", std::nullopt}},
      {"  iPhone  Pro   17.4  (21E)  ", "iOS DeviceSupport",
       DeviceSupportFolder{"iOS", "iPhone", "17.4", "21E"}},
      {"iPhone15,2 17.4 ()", "iOS DeviceSupport",
       DeviceSupportFolder{"iOS", "iPhone15,2", "17.4", ""}},
      {"", "iOS DeviceSupport", std::nullopt},
      {"(21E236)", "iOS DeviceSupport", std::nullopt},
      {"17.4 (", "iOS DeviceSupport", std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CleanupCatalog::deviceSupport(row.folder, row.platform), row.expected) << row.folder;
  }
}

TEST(CleanupCatalogTest, EveryRealFolderNameHasAVersionAndABuild) {
  const std::string names =
      captureOr("07_xcode/devicesupport_folder_names.txt",
                "iPhone15,3 26.5 (23F77)\n14.5.1 (18E212)\nWatch7,2 11.6 (22U80)\n");
  std::size_t start = 0;
  int count = 0;
  while (start < names.size()) {
    const std::size_t end = std::min(names.find('\n', start), names.size());
    const std::string name = names.substr(start, end - start);
    start = end + 1;
    if (name.empty()) continue;
    const auto parsed = CleanupCatalog::deviceSupport(name, "iOS DeviceSupport");
    ASSERT_TRUE(parsed) << name;
    EXPECT_EQ((parsed->model ? *parsed->model + " " : "") + parsed->version + " (" +
                  parsed->build.value_or("") + ")",
              name);
    ++count;
  }
  EXPECT_GE(count, 3);
}

std::pair<std::string, DeviceSupportFolder> support(const std::string& name,
                                                    std::string_view platform = "iOS") {
  return {"/" + name,
          *CleanupCatalog::deviceSupport(name, std::string(platform) + " DeviceSupport")};
}

TEST(CleanupCatalogTest, AModelThatHasMovedOnLeavesItsOlderVersionsBehind) {
  EXPECT_THAT(
      CleanupCatalog::supersededDeviceSupport(
          {support("iPhone15,2 17.9 (21A)"), support("iPhone15,2 17.10 (21B)"),
           support("iPhone15,2 9.3 (13E)"), support("iPad1,1 17.9 (21A)")}),
      ElementsAre(Pair("/iPhone15,2 17.9 (21A)", "This iPhone15,2 has moved on to iOS 17.10"),
                  Pair("/iPhone15,2 9.3 (13E)", "This iPhone15,2 has moved on to iOS 17.10")));
}

TEST(CleanupCatalogTest, OfOneVersionInTwoBuildsTheFirstIsTheNewest) {
  EXPECT_THAT(
      CleanupCatalog::supersededDeviceSupport(
          {support("iPhone15,2 17.4 (21E1)"), support("iPhone15,2 17.4 (21E2)")}),
      ElementsAre(Pair("/iPhone15,2 17.4 (21E2)", "This iPhone15,2 has moved on to iOS 17.4")));
}

TEST(CleanupCatalogTest, AModelWithASingleFolderIsNeverSuperseded) {
  EXPECT_THAT(CleanupCatalog::supersededDeviceSupport(
                  {support("iPhone1,1 1.0 (1A)"), support("iPhone15,2 17.4 (21E)")}),
              IsEmpty());
}

TEST(CleanupCatalogTest, FoldersWithoutAModelSupersedeNothing) {
  EXPECT_THAT(CleanupCatalog::supersededDeviceSupport({support("16.0"), support("17.4 (21E)")}),
              IsEmpty());
}

TEST(CleanupCatalogTest, PlatformsDoNotSupersedeEachOther) {
  EXPECT_THAT(CleanupCatalog::supersededDeviceSupport(
                  {support("X1,1 1.0", "iOS"), support("X1,1 2.0", "watchOS")}),
              IsEmpty());
}

TEST(CleanupCatalogTest, FoldersThatReadAlikeDoNotSupersedeEachOther) {
  EXPECT_THAT(CleanupCatalog::supersededDeviceSupport(
                  {support("iPhone15,2 17.4"), support("iPhone15,2  17.4")}),
              IsEmpty());
}

TEST(CleanupCatalogTest, ARuntimeIsNamedByItsIdentifier) {
  const struct {
    std::string_view identifier;
    std::optional<std::string> name;
  } rows[] = {
      {"com.apple.CoreSimulator.SimRuntime.iOS-17-4", "iOS 17.4"},
      {"iOS-17-4", "iOS 17.4"},
      {"watchOS", "watchOS"},
      {"com.apple.CoreSimulator.SimRuntime.tvOS-12-0-1", "tvOS 12.0.1"},
      {"iOS-", "iOS-"},
      {"", std::nullopt},
      {"...", std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CleanupCatalog::runtimeName(row.identifier), row.name) << row.identifier;
  }
}

TEST(CleanupCatalogTest, UnavailableSimulatorsComeByUdid) {
  constexpr const char* kHandMade = R"json({"devices" : {
    "com.apple.CoreSimulator.SimRuntime.iOS-17-5" : [
      {"dataPath" : "\/Users\/dev\/x", "udid" : "D03F9286-CB36-433E-ADE0-A67768864F77",
       "isAvailable" : false,
       "availabilityError" : "runtime profile not found using \"System\" match policy",
       "name" : "iPhone 15"},
      {"udid" : "5B78FA61-BF98-42C9-84CE-0D5A391AC87F", "isAvailable" : false,
       "name" : "iPad Air 11-inch (M2)"}
    ]
  }})json";
  EXPECT_THAT(CleanupCatalog::unavailableSimulators(captureOr(
                  "07_xcode/simctl_list_devices_unavailable_j_match_policy.json", kHandMade)),
              ElementsAre(UnavailableSimulator{"5B78FA61-BF98-42C9-84CE-0D5A391AC87F",
                                               "iPad Air 11-inch (M2)", "iOS 17.5"},
                          UnavailableSimulator{"D03F9286-CB36-433E-ADE0-A67768864F77", "iPhone 15",
                                               "iOS 17.5"}));
}

TEST(CleanupCatalogTest, OlderToolsThatSayBothAreUnderstood) {
  constexpr const char* kAvailable = "1D1B003A-CD69-40C5-AF21-8768E908AC06";
  constexpr const char* kHandMade = R"json({"devices" : {
    "com.apple.CoreSimulator.SimRuntime.tvOS-12-0" : [
      {"availability" : "(unavailable, runtime profile not found)", "isAvailable" : false,
       "name" : "Apple TV", "udid" : "9D1B003A-CD69-40C5-AF21-8768E908AC06"}
    ],
    "com.apple.CoreSimulator.SimRuntime.iOS-13-0" : [
      {"availability" : "(available)", "isAvailable" : true, "name" : "iPhone 8",
       "udid" : "1D1B003A-CD69-40C5-AF21-8768E908AC06"}
    ]
  }})json";
  const auto simulators = CleanupCatalog::unavailableSimulators(
      captureOr("07_xcode/simctl_list_devices_j_2018_availability_strings.json", kHandMade));
  EXPECT_THAT(simulators, Contains(UnavailableSimulator{"9D1B003A-CD69-40C5-AF21-8768E908AC06",
                                                        "Apple TV", "tvOS 12.0"}));
  EXPECT_THAT(simulators, Not(Contains(Field(&UnavailableSimulator::udid, kAvailable))));
}

TEST(CleanupCatalogTest, ARuntimeWithoutDevicesHasNone) {
  constexpr const char* kHandMade =
      R"json({"devices":{"com.apple.CoreSimulator.SimRuntime.iOS-27-0":[]}})json";
  EXPECT_THAT(
      CleanupCatalog::unavailableSimulators(captureOr(
          "07_xcode/simctl_list_devices_unavailable_j_empty_runtime_array.json", kHandMade)),
      IsEmpty());
}

TEST(CleanupCatalogTest, OnlyADeviceThatIsSaidToBeUnavailableCounts) {
  const auto list = [](std::string_view device) {
    return CleanupCatalog::unavailableSimulators(
        fmt::format(R"json({{"devices":{{"iOS-17-4":[{}]}}}})json", device));
  };
  EXPECT_THAT(list(R"json({"isAvailable":false,"udid":"A","name":"n"})json"), SizeIs(1));
  const std::string_view others[] = {
      R"json({"isAvailable":true,"udid":"A","name":"n"})json",
      R"json({"isAvailable":"NO","udid":"A","name":"n"})json",
      R"json({"isAvailable":0,"udid":"A","name":"n"})json",
      R"json({"availability":"(unavailable)","udid":"A","name":"n"})json",
      R"json({"isAvailable":false,"udid":5,"name":"n"})json",
      R"json({"isAvailable":false,"udid":"A"})json",
      R"json({"isAvailable":false,"udid":"A","name":null})json",
      R"json("text")json",
      "[]",
      "null",
  };
  for (const auto other : others) EXPECT_THAT(list(other), IsEmpty()) << other;
}

TEST(CleanupCatalogTest, ARuntimeWithoutANameIsASimulators) {
  EXPECT_THAT(CleanupCatalog::unavailableSimulators(
                  R"json({"devices":{"":[{"isAvailable":false,"udid":"A","name":"n"}]}})json"),
              ElementsAre(UnavailableSimulator{"A", "n", "Simulator"}));
}

TEST(CleanupCatalogTest, WhatIsNotTheToolsJSONHasNoSimulators) {
  const std::string rows[] = {"",
                              "{",
                              "[]",
                              "null",
                              R"json({"devices":[]})json",
                              R"json({"devices":{"iOS":{}}})json",
                              R"json({"devices":"x"})json",
                              "{\"devices\":{\"\xff\":[]}}",
                              "xcrun: error: unable to find utility \"simctl\"",
                              std::string(100'000, '[')};
  for (const auto& row : rows) {
    EXPECT_THAT(CleanupCatalog::unavailableSimulators(row), IsEmpty()) << row.substr(0, 50);
  }
}

TEST(CleanupCatalogTest, OnlyAUdidNamesADevice) {
  EXPECT_TRUE(CleanupCatalog::isDeviceIdentifier("D03F9286-CB36-433E-ADE0-A67768864F77"));
  for (const char* text :
       {"", "all", "unavailable", "booted", "-h", "../x", "D03F9286-CB36-433E-ADE0-A67768864F77/..",
        "D03F9286-CB36-433E-ADE0-A67768864F7", "/Devices/D03F9286-CB36-433E-ADE0-A67768864F77"}) {
    EXPECT_FALSE(CleanupCatalog::isDeviceIdentifier(text)) << text;
  }
}

}  // namespace
}  // namespace embrix
