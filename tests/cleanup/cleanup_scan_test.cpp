#include "cleanup/cleanup_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "cleanup/cleanup.h"
#include "fakes/folder_world.h"
#include "fakes/scripted_host.h"

namespace embrix {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr double kNow = 1'750'000'000;
constexpr double kHour = 3'600;
constexpr double kDay = 86'400;
constexpr std::int64_t kMegabyte = 1'000'000;

const std::string kHome = "/Users/me";
const std::string kDerived = kHome + "/Library/Developer/Xcode/DerivedData";
const std::string kXcode = kHome + "/Library/Developer/Xcode";
const std::string kPs = "/bin/ps -axo args=";
const std::string kSimctl = "/usr/bin/xcrun simctl list devices unavailable -j";
const std::string kUdid = "D03F9286-CB36-433E-ADE0-A67768864F77";

std::string infoPlist(const std::string& workspace) {
  return "<plist version=\"1.0\"><dict><key>WorkspacePath</key><string>" + workspace +
         "</string></dict></plist>";
}

class CleanupScanTest : public testing::Test {
 protected:
  std::vector<CleanupSpot> scan(const std::string& home = kHome) {
    return Cleanup::discover(
        CleanupPorts{.folders = world, .files = world, .commands = *host.commands, .trash = world},
        home, kNow, watch);
  }
  CleanupSpot spot(std::string_view id) {
    for (CleanupSpot& each : scan()) {
      if (each.id == id) return each;
    }
    throw std::logic_error("no such spot");
  }
  CleanupItem onlyItem(std::string_view id) {
    const CleanupSpot found = spot(id);
    if (found.items.size() != 1) throw std::logic_error("not one item");
    return found.items.front();
  }
  void running(const std::string& lines) { machine.commandOutputs[kPs] = lines; }

  // A build folder of a project whose workspace is there.
  void project(const std::string& name, double lastUsed, std::int64_t bytes = 5 * kMegabyte) {
    const std::string workspace = kHome + "/src/" + name + "/" + name + ".xcworkspace";
    world.folder(workspace);
    world.file(kDerived + "/" + name + "-abc/info.plist", 0, 0, infoPlist(workspace));
    world.file(kDerived + "/" + name + "-abc/Build/app.o", bytes);
    world.folder(kDerived + "/" + name + "-abc", lastUsed);
  }

  FolderWorld world;
  ScriptedHost machine;
  Host host = machine.host();
  ScanWatch watch;
};

TEST_F(CleanupScanTest, AnEmptyHomeHasThirteenEmptySpotsInOrder) {
  world.folder(kHome);
  const auto spots = scan();
  ASSERT_THAT(spots, SizeIs(13));
  for (std::size_t i = 0; i < spots.size(); ++i) {
    EXPECT_EQ(spots[i].id, catalogPlaces()[i].id);
    EXPECT_EQ(spots[i].title, catalogPlaces()[i].title);
    EXPECT_EQ(spots[i].symbol, catalogPlaces()[i].symbol);
    EXPECT_EQ(spots[i].kind, catalogPlaces()[i].kind);
    EXPECT_EQ(spots[i].folder, kHome + "/" + std::string(catalogPlaces()[i].belowHome));
    EXPECT_THAT(spots[i].items, IsEmpty());
  }
  EXPECT_EQ(watch.progress().spotsDone, 13);
}

TEST_F(CleanupScanTest, AMissingHomeHasNothing) {
  for (const CleanupSpot& each : scan()) EXPECT_THAT(each.items, IsEmpty());
}

TEST_F(CleanupScanTest, ABuildFolderIsItsProjects) {
  project("Tidepool", kNow - 3 * kDay);
  CleanupItem expected{
      .id = kDerived + "/Tidepool-abc",
      .title = "Tidepool",
      .detail = "~/src/Tidepool",
      .url = kDerived + "/Tidepool-abc",
      .bytes = 5 * kMegabyte,
      .lastUsed = kNow - 3 * kDay,
      .consequence = "Tidepool's next build starts from scratch, and Xcode re-indexes it."};
  expected.identity = world.facts(kDerived + "/Tidepool-abc")->identity;
  EXPECT_EQ(onlyItem("derived-data"), expected);
}

TEST_F(CleanupScanTest, TheDateInABuildFolderCountsBeforeTheFoldersOwn) {
  project("Tidepool", kNow);
  world.file(kDerived + "/Tidepool-abc/info.plist", 0, 0,
             "<plist version=\"1.0\"><dict><key>WorkspacePath</key><string>/a/b.xcodeproj</string>"
             "<key>LastAccessedDate</key><date>2025-05-01T00:00:00Z</date></dict></plist>");
  EXPECT_EQ(onlyItem("derived-data").lastUsed, 1'746'057'600);
}

TEST_F(CleanupScanTest, AProjectIsInUseForSixHoursWhileXcodeRuns) {
  running("/Applications/Xcode.app/Contents/MacOS/Xcode\n");
  project("Recent", kNow - 6 * kHour + 60);
  project("Older", kNow - 6 * kHour);
  world.file(kDerived + "/ModuleCache.noindex/x.pcm", kMegabyte);
  for (const CleanupItem& item : spot("derived-data").items) {
    const auto expected = item.title == "Older" ? std::nullopt : std::optional("Xcode is running");
    EXPECT_EQ(item.inUse, expected) << item.title;
  }
}

TEST_F(CleanupScanTest, WithoutXcodeNoBuildFolderIsInUse) {
  running("/usr/bin/ssh-agent\n");
  project("Recent", kNow);
  world.file(kDerived + "/ModuleCache.noindex/x.pcm", kMegabyte);
  const auto items = spot("derived-data").items;
  EXPECT_THAT(items, SizeIs(2));
  EXPECT_THAT(items, Each(testing::Field(&CleanupItem::inUse, std::optional<std::string>())));
}

TEST_F(CleanupScanTest, WhenTheProcessesCannotBeListedNothingIsInUse) {
  machine.failing.insert("commands");
  project("Recent", kNow);
  EXPECT_EQ(onlyItem("derived-data").inUse, std::nullopt);
}

TEST_F(CleanupScanTest, AProjectThatIsGoneIsUnusedAtAnyAgeUnlessItIsInUse) {
  project("Lost", kNow);
  world.remove(kHome + "/src");
  CleanupItem item = onlyItem("derived-data");
  EXPECT_EQ(item.obsolete, "The project folder is gone");
  EXPECT_EQ(item.consequence, "The project isn't there any more, so nothing will rebuild it.");
  EXPECT_THAT(spot("derived-data").unused(kNow), SizeIs(1));

  running("xcodebuild\n");
  item = onlyItem("derived-data");
  EXPECT_EQ(item.obsolete, "The project folder is gone");
  EXPECT_EQ(item.inUse, "Xcode is running");
  EXPECT_THAT(spot("derived-data").unused(kNow), IsEmpty());
}

TEST_F(CleanupScanTest, ABuildFolderWithABrokenListIsShared) {
  project("Tidepool", kNow - kDay);
  world.file(kDerived + "/Tidepool-abc/info.plist", 0, 0, "<plist><dict>");
  const CleanupItem item = onlyItem("derived-data");
  EXPECT_EQ(item.title, "Tidepool-abc");
  EXPECT_EQ(item.detail, "Shared by every project");
  EXPECT_EQ(item.consequence,
            "Every project's next build takes a little longer while Xcode rebuilds it.");
  EXPECT_EQ(item.lastUsed, kNow - kDay);
}

TEST_F(CleanupScanTest, AListThatIsALinkIsNotRead) {
  project("Tidepool", kNow);
  world.file("/elsewhere/info.plist", 0, 0, infoPlist("/elsewhere/Other.xcodeproj"));
  world.remove(kDerived + "/Tidepool-abc/info.plist");
  world.link(kDerived + "/Tidepool-abc/info.plist", "/elsewhere/info.plist");
  EXPECT_EQ(onlyItem("derived-data").detail, "Shared by every project");
}

TEST_F(CleanupScanTest, SharedFoldersAreCalledByWhatTheyHold) {
  world.file(kDerived + "/ModuleCache.noindex/x", 3 * kMegabyte);
  world.file(kDerived + "/Unsaved_Xcode_Document-xyz/x", 2 * kMegabyte);
  world.file(kDerived + "/Unsaved_Xcode_Document_2/x", kMegabyte);
  const auto items = spot("derived-data").items;
  ASSERT_THAT(items, SizeIs(3));
  EXPECT_EQ(items[0].title, "Module cache");
  EXPECT_EQ(items[0].detail, "Shared by every project");
  EXPECT_EQ(items[1].title, "Unsaved Xcode document");
  EXPECT_EQ(items[1].detail, "A document you never saved");
  EXPECT_EQ(items[2].title, "Unsaved Xcode document");
}

TEST_F(CleanupScanTest, HiddenFoldersFilesAndLinksAreNoBuildFolders) {
  world.file(kDerived + "/.hidden/x", 9 * kMegabyte);
  world.file(kDerived + "/loose.bin", 9 * kMegabyte);
  world.file("/elsewhere/x", 9 * kMegabyte);
  world.link(kDerived + "/linked", "/elsewhere");
  EXPECT_THAT(spot("derived-data").items, IsEmpty());
}

TEST_F(CleanupScanTest, DeviceSupportOfAllPlatformsIsJudgedByItsModel) {
  const std::string ios = kXcode + "/iOS DeviceSupport";
  world.file(ios + "/iPhone15,2 17.4 (21E219)/Symbols/a", 4 * kMegabyte);
  world.file(ios + "/iPhone15,2 17.5 (21F79)/Symbols/a", 3 * kMegabyte);
  world.file(ios + "/16.0/Symbols/a", 2 * kMegabyte);
  world.file(ios + "/Xcode Cache/a", 9 * kMegabyte);
  world.file(kXcode + "/watchOS DeviceSupport/Watch7,2 11.6/a", kMegabyte);
  world.file(kXcode + "/Elsewhere/Watch7,2 11.6/a", 9 * kMegabyte);
  world.folder(ios + "/iPhone15,2 17.4 (21E219)", kNow - 300 * kDay);

  const CleanupSpot found = spot("device-support");
  ASSERT_THAT(found.items, SizeIs(4));
  const CleanupItem& old = found.items[0];
  EXPECT_EQ(old.title, "iOS 17.4");
  EXPECT_EQ(old.detail, "iPhone15,2 · build 21E219");
  EXPECT_EQ(old.id, ios + "/iPhone15,2 17.4 (21E219)");
  EXPECT_EQ(old.url, old.id);
  EXPECT_EQ(old.lastUsed, kNow - 300 * kDay);
  EXPECT_TRUE(old.dateIsAdded);
  EXPECT_EQ(old.consequence,
            "Plugging in a device on iOS 17.4 copies these again: a few minutes before you can "
            "debug on it.");
  EXPECT_EQ(old.obsolete, "This iPhone15,2 has moved on to iOS 17.5");
  EXPECT_EQ(found.items[1].obsolete, std::nullopt);
  EXPECT_EQ(found.items[2].title, "iOS 16.0");
  EXPECT_EQ(found.items[2].detail, std::nullopt);
  EXPECT_EQ(found.items[3].title, "watchOS 11.6");
  EXPECT_EQ(found.items[3].detail, "Watch7,2");
  EXPECT_THAT(found.unused(kNow), ElementsAre(old)) << "never by age alone";
}

TEST_F(CleanupScanTest, ABuildWithoutAModelIsTheWholeDetail) {
  world.file(kXcode + "/iOS DeviceSupport/17.4.1 (21E236)/a", kMegabyte);
  EXPECT_EQ(onlyItem("device-support").detail, "build 21E236");
}

TEST_F(CleanupScanTest, UnavailableSimulatorsAreMeasuredByTheirFolders) {
  const std::string devices = kHome + "/Library/Developer/CoreSimulator/Devices";
  world.file(devices + "/" + kUdid + "/data/x", 7 * kMegabyte);
  world.folder(devices + "/" + kUdid, kNow - kDay);
  machine.commandOutputs[kSimctl] = fmt::format(
      R"({{"devices":{{"com.apple.CoreSimulator.SimRuntime.iOS-17-5":[
          {{"udid":"{}","name":"iPhone 15","isAvailable":false}},
          {{"udid":"00000000-CB36-433E-ADE0-A67768864F77","name":"gone","isAvailable":false}},
          {{"udid":"../Caches","name":"wicked","isAvailable":false}}]}}}})",
      kUdid);
  world.file(kHome + "/Library/Developer/CoreSimulator/Caches/x", 9 * kMegabyte);

  const CleanupSpot found = spot("unavailable-simulators");
  EXPECT_EQ(found.kind, CleanupSpot::Kind::unavailableSimulators);
  ASSERT_THAT(found.items, SizeIs(1));
  const CleanupItem& item = found.items.front();
  EXPECT_EQ(item.id, kUdid);
  EXPECT_EQ(item.simulatorUDID, kUdid);
  EXPECT_EQ(item.title, "iPhone 15");
  EXPECT_EQ(item.detail, "iOS 17.5, not installed");
  EXPECT_EQ(item.url, devices + "/" + kUdid);
  EXPECT_EQ(item.bytes, 7 * kMegabyte);
  EXPECT_EQ(item.lastUsed, kNow - kDay);
  EXPECT_EQ(item.consequence,
            "Its apps and data go with it. Xcode can't run it anyway: its runtime isn't "
            "installed.");
  EXPECT_EQ(item.obsolete, "Its runtime isn't installed");
}

TEST_F(CleanupScanTest, AFailingSimulatorToolHasNoSimulators) {
  world.file(kHome + "/Library/Developer/CoreSimulator/Devices/" + kUdid + "/x", kMegabyte);
  EXPECT_THAT(spot("unavailable-simulators").items, IsEmpty());
}

TEST_F(CleanupScanTest, SimulatorCachesAreOneItem) {
  const std::string caches = kHome + "/Library/Developer/CoreSimulator/Caches";
  world.file(caches + "/dyld/x", 7 * kMegabyte);
  world.folder(caches, kNow - 9 * kDay);
  world.folder(caches + "/dyld", kNow - 2 * kDay);
  world.folder(caches + "/dyld/deep", kNow);
  CleanupItem item = onlyItem("simulator-caches");
  EXPECT_EQ(item.title, "Simulator caches");
  EXPECT_EQ(item.detail, "~/Library/Developer/CoreSimulator/Caches");
  EXPECT_EQ(item.id, caches);
  EXPECT_EQ(item.url, caches);
  EXPECT_EQ(item.lastUsed, kNow - 2 * kDay)
      << "the newest of the folder and what is directly in it";
  EXPECT_EQ(item.consequence, "The next simulator boot is slower while macOS rebuilds them.");
  EXPECT_EQ(item.inUse, std::nullopt);

  running("launchd_sim /x\n");
  EXPECT_EQ(onlyItem("simulator-caches").inUse, "A simulator is running");
}

TEST_F(CleanupScanTest, GradleFoldersAreCalledByTheirNames) {
  const std::string gradle = kHome + "/.gradle/caches";
  const struct {
    std::string name, title, consequence;
  } rows[] = {
      {"modules-2", "Downloaded dependencies",
       "Every Android project downloads its dependencies again on its next build. Builds fail "
       "offline until then."},
      {"build-cache-1", "Build cache",
       "Android builds redo work they'd have reused. Nothing is lost."},
      {"8.7", "Gradle 8.7", "Projects on Gradle 8.7 rebuild its caches on their next build."},
      {"jars-9", "jars-9", "Gradle rebuilds it on the next build."},
  };
  std::int64_t bytes = 9 * kMegabyte;
  for (const auto& row : rows) world.file(gradle + "/" + row.name + "/x", bytes -= kMegabyte);
  running("java GradleDaemon 8.7\n");
  const auto items = spot("gradle").items;
  ASSERT_THAT(items, SizeIs(std::size(rows)));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(items[i].title, rows[i].title);
    EXPECT_EQ(items[i].consequence, rows[i].consequence);
    EXPECT_EQ(items[i].detail, "~/.gradle/caches/" + rows[i].name);
    EXPECT_EQ(items[i].id, gradle + "/" + rows[i].name);
    EXPECT_EQ(items[i].inUse, "Gradle is running");
  }
}

TEST_F(CleanupScanTest, AnEmptyGradleFolderIsSkippedAndTheSpotStays) {
  world.folder(kHome + "/.gradle/caches/modules-2");
  EXPECT_THAT(spot("gradle").items, IsEmpty());
}

TEST_F(CleanupScanTest, PackageManagersAreOneItemEach) {
  const struct {
    std::string_view id, folder, title, process, inUse, consequence;
  } rows[] = {
      {"npm", ".npm/_cacache", "npm cache", "npm install", "npm is running",
       "Your next npm install downloads its packages again. Installs fail offline until then."},
      {"pnpm", "Library/pnpm/store", "pnpm store", "pnpm add x", "pnpm is running",
       "Your next pnpm install downloads its packages again. Installs fail offline until then."},
      {"yarn", "Library/Caches/Yarn", "Yarn cache", "yarn upgrade", "yarn is running",
       "Your next yarn install downloads its packages again."},
      {"swiftpm", "Library/Caches/org.swift.swiftpm", "Swift packages", "swift-build",
       "swift is running", "Swift packages download again the next time a project resolves them."},
      {"cocoapods", "Library/Caches/CocoaPods", "CocoaPods cache", "pod", "pod is running",
       "Your next pod install downloads its pods again."},
      {"homebrew", "Library/Caches/Homebrew", "Homebrew downloads", "brew", "brew is running",
       "Nothing you've installed changes. Homebrew downloads again only to reinstall."},
      {"pip", "Library/Caches/pip", "pip cache", "pip3", "pip is running",
       "Your next pip install downloads its wheels again."},
  };
  for (const auto& row : rows) {
    const std::string folder = kHome + "/" + std::string(row.folder);
    world.file(folder + "/x", kMegabyte, kNow - kDay);
    running("/sbin/launchd\n");
    CleanupItem item = onlyItem(row.id);
    EXPECT_EQ(item.title, row.title);
    EXPECT_EQ(item.id, folder);
    EXPECT_EQ(item.url, folder);
    EXPECT_EQ(item.detail, "~/" + std::string(row.folder));
    EXPECT_EQ(item.bytes, kMegabyte);
    EXPECT_EQ(item.lastUsed, kNow - kDay);
    EXPECT_EQ(item.consequence, row.consequence);
    EXPECT_EQ(item.inUse, std::nullopt);
    running(std::string(row.process) + "\n");
    EXPECT_EQ(onlyItem(row.id).inUse, row.inUse);
  }
}

TEST_F(CleanupScanTest, NpmIsInUseWhileItInstallsAndNotWhileItRunsAScript) {
  world.file(kHome + "/.npm/_cacache/x", kMegabyte);
  running("npm install\n");
  EXPECT_EQ(onlyItem("npm").inUse, "npm is running");
  running("npm run dev\n");
  EXPECT_EQ(onlyItem("npm").inUse, std::nullopt);
}

TEST_F(CleanupScanTest, ArchivesAreShownAndCannotBeMoved) {
  world.file(kXcode + "/Archives/2025-01-01/App.xcarchive/x", 6 * kMegabyte);
  world.folder(kXcode + "/Archives/2025-01-01", kNow - 99 * kDay);
  const CleanupSpot found = spot("archives");
  EXPECT_EQ(found.kind, CleanupSpot::Kind::review);
  ASSERT_THAT(found.items, SizeIs(1));
  const CleanupItem& item = found.items.front();
  EXPECT_EQ(item.id, "Archives");
  EXPECT_EQ(item.title, "Xcode Archives");
  EXPECT_EQ(item.detail, "~/Library/Developer/Xcode/Archives");
  EXPECT_EQ(item.lastUsed, kNow - 99 * kDay);
  EXPECT_EQ(item.consequence,
            "Builds you archived, with the symbols that turn their crash reports into readable "
            "code. Delete old ones from Xcode's Organizer.");
  EXPECT_EQ(item.url, std::nullopt);
  EXPECT_THAT(found.unused(kNow), IsEmpty());
}

TEST_F(CleanupScanTest, AnItemAppearsFromAMillionBytesOn) {
  project("Small", kNow, 999'999);
  EXPECT_THAT(spot("derived-data").items, IsEmpty());
  project("Small", kNow, 1'000'000);
  EXPECT_EQ(onlyItem("derived-data").bytes, 1'000'000);
}

TEST_F(CleanupScanTest, ItemsComeLargestFirstAndEqualOnesByName) {
  project("A", kNow, 2 * kMegabyte);
  project("B", kNow, 3 * kMegabyte);
  project("C", kNow, 2 * kMegabyte);
  std::vector<std::string> titles;
  for (const CleanupItem& item : spot("derived-data").items) titles.push_back(item.title);
  EXPECT_THAT(titles, ElementsAre("B", "A", "C"));
}

TEST_F(CleanupScanTest, OnLinuxCachesAreWhereTheBaseFoldersSay) {
  world.base = BaseFolders{.cache = kHome + "/.cache", .data = kHome + "/.local/share"};
  world.file(kHome + "/.cache/pip/x", kMegabyte);
  world.file(kHome + "/Library/Caches/pip/x", 9 * kMegabyte);
  const CleanupItem item = onlyItem("pip");
  EXPECT_EQ(item.detail, "~/.cache/pip");
  EXPECT_EQ(item.bytes, kMegabyte);
}

TEST_F(CleanupScanTest, ABaseFolderOutsideTheHomeIsNotLookedAt) {
  world.base = BaseFolders{.cache = "/scratch/me", .data = kHome + "/.local/share"};
  world.folder(kHome);
  world.file("/scratch/me/pip/x", 9 * kMegabyte);
  EXPECT_THAT(spot("pip").items, IsEmpty());
  EXPECT_THAT(world.log, Not(Contains(StartsWith("measure /scratch"))));
}

TEST_F(CleanupScanTest, ALinkedSpotBelowTheHomeIsWhatTheLinkSays) {
  world.file(kHome + "/big/npm/x", 4 * kMegabyte);
  world.link(kHome + "/.npm/_cacache", kHome + "/big/npm");
  const CleanupItem item = onlyItem("npm");
  EXPECT_EQ(item.bytes, 4 * kMegabyte);
  EXPECT_EQ(item.id, kHome + "/.npm/_cacache");
  EXPECT_EQ(item.detail, "~/.npm/_cacache");
  EXPECT_EQ(item.url, kHome + "/big/npm");
  EXPECT_EQ(item.identity, world.facts(kHome + "/big/npm")->identity);
}

TEST_F(CleanupScanTest, ALinkThatLeadsOutOfTheHomeIsNotFollowed) {
  const std::string outside[] = {"/Volumes/Work/cache", "/Users/melanie/cache", "/Users", kHome,
                                 kHome + "/.."};
  world.file("/Volumes/Work/cache/x", 9 * kMegabyte);
  world.file("/Users/melanie/cache/x", 9 * kMegabyte);
  for (const std::string& target : outside) {
    world.remove(kHome + "/.npm");
    world.link(kHome + "/.npm/_cacache", target);
    world.log.clear();
    EXPECT_THAT(spot("npm").items, IsEmpty()) << target;
    EXPECT_THAT(world.log, IsEmpty()) << target;
  }
}

TEST_F(CleanupScanTest, AnOuterFolderThatIsALinkIsJudgedByWhereItLeads) {
  world.file("/Volumes/Work/Developer/Xcode/DerivedData/App-abc/x", 9 * kMegabyte);
  world.folder(kHome + "/Library");
  world.link(kHome + "/Library/Developer", "/Volumes/Work/Developer");
  EXPECT_THAT(spot("derived-data").items, IsEmpty());
  world.file(kHome + "/dev/Xcode/DerivedData/App-abc/x", 9 * kMegabyte);
  world.remove(kHome + "/Library/Developer");
  world.link(kHome + "/Library/Developer", kHome + "/dev");
  EXPECT_EQ(onlyItem("derived-data").url, kHome + "/dev/Xcode/DerivedData/App-abc");
}

TEST_F(CleanupScanTest, ALinkedPlatformFolderCountsBelowTheHomeAlone) {
  world.file(kHome + "/big/iPhone15,2 17.4/a", kMegabyte);
  world.link(kXcode + "/iOS DeviceSupport", kHome + "/big");
  world.file("/Volumes/Work/tv/AppleTV1,1 17.4/a", kMegabyte);
  world.link(kXcode + "/tvOS DeviceSupport", "/Volumes/Work/tv");
  EXPECT_EQ(onlyItem("device-support").url, kHome + "/big/iPhone15,2 17.4");
}

TEST_F(CleanupScanTest, AHomeThatIsReachedByALinkIsAHome) {
  world.file("/System/Data/me/.npm/_cacache/x", kMegabyte);
  world.link("/Users/me", "/System/Data/me");
  const CleanupItem item = onlyItem("npm");
  EXPECT_EQ(item.id, "/Users/me/.npm/_cacache");
  EXPECT_EQ(item.detail, "~/.npm/_cacache");
  EXPECT_EQ(item.url, "/System/Data/me/.npm/_cacache");
}

TEST_F(CleanupScanTest, NothingOutsideTheCatalogueIsMeasured) {
  world.file(kHome + "/Documents/thesis", 9 * kMegabyte);
  world.file(kHome + "/.npm/_logs/x", 9 * kMegabyte);
  world.file(kHome + "/.gradle/wrapper/x", 9 * kMegabyte);
  project("Tidepool", kNow);
  world.file(kHome + "/src/Tidepool/big", 9 * kMegabyte);
  world.file(kHome + "/.npm/_cacache/x", 9 * kMegabyte);
  scan();
  EXPECT_THAT(world.log, testing::UnorderedElementsAre("measure " + kDerived + "/Tidepool-abc",
                                                       "measure " + kHome + "/.npm/_cacache"));
}

TEST_F(CleanupScanTest, AnUnreadableSpotHasNoItems) {
  world.file(kHome + "/.npm/_cacache/x", kMegabyte);
  world.unreadable.insert(kHome + "/.npm/_cacache");
  EXPECT_THAT(spot("npm").items, IsEmpty());
}

TEST_F(CleanupScanTest, NamesOfAnyBytesComeOutAsText) {
  world.file(kDerived + "/a\nb\xff.noindex/x", kMegabyte);
  const CleanupItem item = onlyItem("derived-data");
  EXPECT_EQ(item.title, "a\nb\xEF\xBF\xBD");
  EXPECT_EQ(item.url, kDerived + "/a\nb\xff.noindex");
}

TEST_F(CleanupScanTest, AnAbandonedScanStopsAtOnce) {
  project("A", kNow);
  project("B", kNow);
  world.file(kHome + "/.npm/_cacache/x", kMegabyte);
  world.onMeasure = [this](const std::string&) { watch.abandon(); };
  EXPECT_THAT(scan(), SizeIs(1));
  EXPECT_THAT(world.log, SizeIs(1));
}

TEST_F(CleanupScanTest, TheSimulatorToolIsAskedOnlyWhereThereAreSimulators) {
  world.folder(kHome);
  scan();
  EXPECT_THAT(machine.log, ElementsAre("commands.output " + kPs));
  world.folder(kHome + "/Library/Developer/CoreSimulator/Devices");
  machine.log.clear();
  scan();
  EXPECT_THAT(machine.log, ElementsAre("commands.output " + kPs, "commands.output " + kSimctl));
}

}  // namespace
}  // namespace embrix
