// The cleanup on this machine's own file system, from looking to putting back.
#include "cleanup/cleanup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "developer_home.h"
#include "entry/report_cleanup.h"
#include "fakes/manual_scheduler.h"
#include "fakes/scripted_host.h"
#include "host/local_files.h"
#include "hosts/linux/folder_source.h"
#include "hosts/linux/trash.h"
#include "manifest.h"
#include "ordinary_user.h"
#include "other_volume.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;
using testing::StartsWith;

class CleanupOnDiskTest : public testing::Test {
 protected:
  CleanupOnDiskTest() {
    scheduler.wall = DeveloperHome::kNow;
    machine.commandOutputs["/usr/bin/xcrun simctl list devices unavailable -j"] =
        DeveloperHome::simulators();
    machine.commandOutputs["/bin/ps -axo args="] = "";
  }

  CleanupPorts ports() {
    return {.folders = folders, .files = files, .commands = *host.commands, .trash = trash};
  }
  std::string report() {
    ScanWatch watch;
    return reportCleanup(Cleanup::discover(ports(), home.path(), DeveloperHome::kNow, watch),
                         DeveloperHome::kNow);
  }
  void scan() {
    cleanup.scan();
    scheduler.runBackground();
  }
  void clear(const std::vector<CleanupItem>& items) {
    cleanup.clear(items);
    scheduler.runBackground();
  }
  std::vector<CleanupItem> items() {
    std::vector<CleanupItem> all;
    for (const CleanupSpot& spot : *cleanup.spots()) {
      all.insert(all.end(), spot.items.begin(), spot.items.end());
    }
    return all;
  }
  CleanupItem item(const std::string& title) {
    for (const CleanupItem& each : items()) {
      if (each.title == title) return each;
    }
    throw std::logic_error("no item " + title);
  }
  // Every path at home, the Trash aside.
  std::set<std::string> paths() {
    std::set<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(home.path())) {
      const std::string path = entry.path().string();
      if (!path.starts_with(home / ".local/share/Trash")) paths.insert(path);
    }
    return paths;
  }

  DeveloperHome home;
  LinuxFolderSource folders{baseFolders(home.path(), nullptr, nullptr)};
  LocalFiles files;
  DesktopTrash trash{{.dataFolder = home / ".local/share", .uid = ::getuid(), .wallTime = [] {
                        return DeveloperHome::kNow;
                      }}};
  ScriptedHost machine;
  Host host = machine.host();
  ManualScheduler scheduler;
  Cleanup cleanup{ports(), home.path(), scheduler};
};

TEST_F(CleanupOnDiskTest, TheReportOfADevelopersHomeIsThisToTheCharacter) {
  machine.commandOutputs["/bin/ps -axo args="] =
      "/sbin/init\n/Applications/Xcode.app/Contents/MacOS/Xcode\nlaunchd_sim /x\nnpm install\n";
  EXPECT_EQ(report(),
            "Xcode DerivedData · 109 MB\n"
            "    40 MB    App (tidepool) · ~/Code/tidepool/ios · used 3 days ago\n"
            "    30 MB    Lighthouse · ~/Code · used 8 weeks ago · UNUSED\n"
            "    20 MB    Sunday · ~/Code · used today · IN USE: Xcode is running\n"
            "    10 MB    Lost · ~/Code · used yesterday · OBSOLETE: The project folder is gone"
            " · UNUSED\n"
            "    5 MB     Module cache · Shared by every project · used 3 months ago"
            " · IN USE: Xcode is running\n"
            "    4 MB     Odd\\x0aname · Shared by every project · used yesterday"
            " · IN USE: Xcode is running\n"
            "Device support files · 41 MB\n"
            "    12 MB    iOS 17.4.1 · iPhone15,2 · build 21E236 · added 2 weeks ago"
            " · OBSOLETE: This iPhone15,2 has moved on to iOS 17.10 · UNUSED\n"
            "    11 MB    iOS 17.10 · iPhone15,2 · build 21F79 · added 2 days ago\n"
            "    10 MB    iOS 16.0 · - · added over a year ago\n"
            "    8 MB     watchOS 11.6 · Watch7,2 · added today\n"
            "Unavailable simulators · 15 MB\n"
            "    15 MB    iPhone 15 · iOS 17.5, not installed · used 5 weeks ago"
            " · OBSOLETE: Its runtime isn't installed · UNUSED\n"
            "Simulator caches · 6 MB\n"
            "    6 MB     Simulator caches · ~/Library/Developer/CoreSimulator/Caches"
            " · used 5 weeks ago · IN USE: A simulator is running\n"
            "Gradle caches · 10 MB\n"
            "    7 MB     Downloaded dependencies · ~/.gradle/caches/modules-2"
            " · used 2 weeks ago\n"
            "    3 MB     Gradle 8.7 · ~/.gradle/caches/8.7 · used over a year ago · UNUSED\n"
            "npm cache · 9 MB\n"
            "    9 MB     npm cache · ~/.npm/_cacache · used 5 days ago"
            " · IN USE: npm is running\n"
            "pnpm store · 8 MB\n"
            "    8 MB     pnpm store · ~/.local/share/pnpm/store · used 4 weeks ago · UNUSED\n"
            "Swift packages · 2 MB\n"
            "    2 MB     Swift packages · ~/.cache/org.swift.swiftpm · used 4 weeks ago\n"
            "CocoaPods cache · 1 MB\n"
            "    1 MB     CocoaPods cache · ~/Library/Caches/CocoaPods · used yesterday\n"
            "Homebrew downloads · 16 MB\n"
            "    16 MB    Homebrew downloads · ~/.cache/Homebrew · used 2 months ago · UNUSED\n"
            "Archives · 25 MB\n"
            "    25 MB    Xcode Archives · ~/Library/Developer/Xcode/Archives"
            " · used 6 months ago · UNUSED\n");
}

TEST_F(CleanupOnDiskTest, LookingChangesNothing) {
  const Manifest before = manifestOf(home.path());
  report();
  EXPECT_EQ(manifestOf(home.path()), before);
}

TEST_F(CleanupOnDiskTest, AHomeThatEndsInASlashIsTheSameHome) {
  ScanWatch watch;
  EXPECT_EQ(reportCleanup(Cleanup::discover(ports(), home.path() + "/", DeveloperHome::kNow, watch),
                          DeveloperHome::kNow),
            report());
}

TEST_F(CleanupOnDiskTest, EverythingClearedAndPutBackIsAsItWas) {
  scan();
  std::vector<CleanupItem> clearable;
  for (const CleanupItem& each : items()) {
    if (each.url && !each.simulatorUDID) clearable.push_back(each);
  }
  ASSERT_THAT(clearable, SizeIs(18));
  std::map<std::string, Manifest> before;
  for (const CleanupItem& each : clearable) before[*each.url] = manifestOf(*each.url);
  const auto pathsBefore = paths();
  const auto itemsBefore = items();

  clear(clearable);
  EXPECT_EQ(*cleanup.problem(), std::nullopt);
  for (const auto& [path, manifest] : before) EXPECT_FALSE(fs::exists(path)) << path;
  EXPECT_THAT((*cleanup.lastCleared())->moves, SizeIs(clearable.size()));

  cleanup.putBack();
  EXPECT_EQ(*cleanup.problem(), std::nullopt);
  for (const auto& [path, manifest] : before) EXPECT_EQ(manifestOf(path), manifest) << path;
  EXPECT_EQ(paths(), pathsBefore);
  EXPECT_TRUE(fs::is_empty(home / ".local/share/Trash/files"));
  EXPECT_TRUE(fs::is_empty(home / ".local/share/Trash/info"));
  scheduler.runBackground();
  EXPECT_EQ(items(), itemsBefore);
}

TEST_F(CleanupOnDiskTest, OnlyWhatIsUnusedGoesWhenThatIsCleared) {
  scan();
  const auto before = paths();
  clear(cleanup.unusedItems());
  std::set<std::string> gone;
  for (const std::string& path : before) {
    if (!fs::exists(fs::symlink_status(path))) gone.insert(path);
  }
  for (const std::string& path : gone) {
    const bool isMeant =
        path.starts_with(home / "Library/Developer/Xcode/DerivedData/Lighthouse-def") ||
        path.starts_with(home / "Library/Developer/Xcode/DerivedData/Lost-jkl") ||
        path.starts_with(home / "Library/Developer/Xcode/DerivedData/ModuleCache.noindex") ||
        path.starts_with(home / "Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 17.4.1") ||
        path.starts_with(home / "Library/Developer/CoreSimulator/Caches") ||
        path.starts_with(home / ".gradle/caches/8.7") ||
        path.starts_with(home / ".local/share/pnpm/store") || path.starts_with(home / "big/brew");
    EXPECT_TRUE(isMeant) << path;
  }
  EXPECT_THAT(gone, testing::Not(IsEmpty()));
  // The simulator's tool is not there, so it stays and is told.
  EXPECT_THAT(*cleanup.problem(), Optional(StartsWith("Couldn't clear 1 item.")));
}

TEST_F(CleanupOnDiskTest, AFolderReplacedBetweenLookingAndClearingStays) {
  scan();
  const CleanupItem npm = item("npm cache");
  fs::remove_all(*npm.url);
  home.text(".npm/_cacache/precious", "content");
  const Manifest before = manifestOf(*npm.url);
  clear({npm});
  EXPECT_EQ(manifestOf(*npm.url), before);
  EXPECT_THAT(*cleanup.problem(), Optional(StartsWith("Couldn't clear 1 item.")));
}

TEST_F(CleanupOnDiskTest, AFolderReplacedByALinkBetweenLookingAndClearingStays) {
  scan();
  const CleanupItem app = item("App (tidepool)");
  fs::remove_all(*app.url);
  fs::create_symlink(home / "Code", *app.url);
  const Manifest before = manifestOf(home / "Code");
  clear({app});
  EXPECT_EQ(manifestOf(home / "Code"), before);
  EXPECT_TRUE(fs::is_symlink(*app.url));
}

TEST_F(CleanupOnDiskTest, AnOuterFolderReplacedByALinkKeepsWhatItLeadsTo) {
  scan();
  const CleanupItem app = item("App (tidepool)");
  const std::string derived = home / "Library/Developer/Xcode/DerivedData";
  fs::rename(derived, home.outside("DerivedData"));
  fs::create_symlink(home.outside("DerivedData"), derived);
  const Manifest before = manifestOf(home.outside("DerivedData"));
  clear({app});
  EXPECT_EQ(manifestOf(home.outside("DerivedData")), before);
  EXPECT_NE(*cleanup.problem(), std::nullopt);
}

TEST_F(CleanupOnDiskTest, AFolderThatGrewSinceItWasMeasuredGoesWhole) {
  scan();
  const CleanupItem npm = item("npm cache");
  home.file(".npm/_cacache/content-v2/new", 5);
  clear({npm});
  EXPECT_EQ((*cleanup.lastCleared())->bytes, npm.bytes);
  cleanup.putBack();
  EXPECT_TRUE(fs::exists(home / ".npm/_cacache/content-v2/new"));
}

TEST_F(CleanupOnDiskTest, AnUnreadableChildGoesAndComesBackWithTheRest) {
  home.file(".npm/_cacache/closed/x", 3);
  home.giveTo(OrdinaryUser::kNobody);
  const std::string npm = home / ".npm/_cacache";
  const Manifest before = manifestOf(npm);
  fs::permissions(npm + "/closed", fs::perms::none);
  {
    const OrdinaryUser user;
    scan();
    EXPECT_LT(item("npm cache").bytes, 10'000'000) << "nobody can tell what is in it";
    clear({item("npm cache")});
    EXPECT_EQ(*cleanup.problem(), std::nullopt);
    EXPECT_FALSE(fs::exists(npm));
    cleanup.putBack();
  }
  EXPECT_EQ(*cleanup.problem(), std::nullopt);
  fs::permissions(npm + "/closed", fs::perms(0755));
  EXPECT_EQ(manifestOf(npm), before);
}

TEST_F(CleanupOnDiskTest, ANameWithALineEndIsClearedAndPutBack) {
  scan();
  const CleanupItem odd = item("Odd\nname");
  const Manifest before = manifestOf(*odd.url);
  clear({odd});
  EXPECT_FALSE(fs::exists(*odd.url));
  cleanup.putBack();
  EXPECT_EQ(manifestOf(*odd.url), before);
}

TEST_F(CleanupOnDiskTest, AnItemWithAnotherVolumeInItStays) {
  const std::string inside = ".gradle/caches/8.7/mounted";
  fs::create_directory(home / inside);
  const OtherVolume volume(home / inside);
  if (!volume.isMounted()) {
    home.text("mountinfo", fmt::format("1 0 0:1 / / rw\n2 1 0:2 / {} rw\n", home / inside));
    trash = DesktopTrash({.dataFolder = home / ".local/share",
                          .uid = ::getuid(),
                          .wallTime = [] { return DeveloperHome::kNow; },
                          .mountinfo = home / "mountinfo"});
  }
  scan();
  const CleanupItem gradle = item("Gradle 8.7");
  EXPECT_LT(gradle.bytes, 4'000'000);
  clear({gradle});
  EXPECT_TRUE(fs::exists(home / inside));
  EXPECT_THAT(*cleanup.problem(), Optional(StartsWith("Couldn't clear 1 item.")));
}

TEST_F(CleanupOnDiskTest, SomethingNewInAnItemsPlaceKeepsItInTheTrash) {
  scan();
  const CleanupItem npm = item("npm cache");
  clear({npm});
  home.text(".npm/_cacache/new", "content");
  cleanup.putBack();
  EXPECT_EQ(*cleanup.problem(),
            "1 item was no longer in the Trash, or something new is in its place.");
  EXPECT_TRUE(fs::exists(home / ".npm/_cacache/new"));
  EXPECT_TRUE(fs::exists(home / ".local/share/Trash/files/_cacache/content-v2/x"));
}

TEST_F(CleanupOnDiskTest, WhatIsAskedForThroughAPathOutsideTheCatalogueStays) {
  const Manifest before = manifestOf(home / "Code");
  const auto facts = folders.facts(home / "Code");
  ASSERT_TRUE(facts);
  clear({CleanupItem{.id = "x", .url = home / "Code", .identity = facts->identity}});
  EXPECT_EQ(manifestOf(home / "Code"), before);
  EXPECT_NE(*cleanup.problem(), std::nullopt);
}

}  // namespace
}  // namespace embrix
