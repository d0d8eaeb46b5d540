#include "hosts/linux/trash.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <fmt/format.h>

#include "fakes/full_disk.h"
#include "fakes/scratch_folder.h"
#include "manifest.h"
#include "ordinary_user.h"
#include "other_volume.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(folder, missing)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class DesktopTrashTest : public testing::Test {
 protected:
  DesktopTrashTest() {
    options.dataFolder = scratch / "data";
    options.uid = ::getuid();
    options.wallTime = [] { return 1'750'000'000.0; };
  }

  // A folder with a file, a link, two names of one file and dates of its own.
  std::string thing(const std::string& name) { return thingAt(scratch / name); }
  static std::string thingAt(const std::string& path) {
    fs::create_directories(path + "/deep/er");
    std::ofstream(path + "/deep/file") << "content";
    fs::create_hard_link(path + "/deep/file", path + "/second name");
    fs::create_symlink("/etc", path + "/link");
    fs::permissions(path + "/deep/er", fs::perms::owner_read);
    const timespec old[2] = {{.tv_sec = 1'000, .tv_nsec = 1}, {.tv_sec = 2'000, .tv_nsec = 3}};
    for (const std::string& each : {path + "/deep/file", path + "/deep", path}) {
      EXPECT_EQ(::utimensat(AT_FDCWD, each.c_str(), old, 0), 0);
    }
    return path;
  }
  static FileIdentity identityOf(const std::string& path) {
    const LinklessPlace place = linklessPlace(path);
    return factsAt(place.folder.number(), place.name.c_str()).value().identity;
  }
  TrashMove move(const std::string& path) {
    return DesktopTrash(options).moveToTrash(path, identityOf(path));
  }
  bool putBack(const TrashMove& moved, const std::string& original) {
    return DesktopTrash(options).putBack(*moved.trashed, original, identityOf(*moved.trashed));
  }
  std::string homeTrash(std::string_view name) {
    return scratch / ("data/Trash/" + std::string(name));
  }

  // Neither the thing nor the Trash has changed.
  void expectNothingMoved(const std::string& path, const Manifest& before) {
    EXPECT_EQ(manifestOf(path), before);
    EXPECT_THAT(namesIn(homeTrash("files")), IsEmpty());
    EXPECT_THAT(namesIn(homeTrash("info")), IsEmpty());
  }

  ScratchFolder scratch;
  DesktopTrashOptions options;
};

TEST_F(DesktopTrashTest, AThingGoesToTheHomeTrashWithAFileThatTellsWhereItWas) {
  const std::string path = thing("cache");
  const TrashMove moved = move(path);
  EXPECT_EQ(moved, (TrashMove{TrashOutcome::moved, homeTrash("files/cache")}));
  EXPECT_FALSE(scratch.has("cache"));
  EXPECT_THAT(contentOf(homeTrash("info/cache.trashinfo")),
              testing::StartsWith("[Trash Info]\nPath=" + path + "\nDeletionDate=2025-06-1"));
  struct stat status {};
  ASSERT_EQ(::stat(homeTrash("").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(DesktopTrashTest, WhatIsPutBackIsWhatItWas) {
  const std::string path = thing("home/cache");
  const Manifest before = manifestOf(path);
  ASSERT_EQ(before.size(), 6u);
  const TrashMove moved = move(path);
  EXPECT_EQ(manifestOf(homeTrash("files/cache")), before);
  ASSERT_TRUE(putBack(moved, path));
  EXPECT_EQ(manifestOf(path), before);
  EXPECT_THAT(namesIn(homeTrash("files")), IsEmpty());
  EXPECT_THAT(namesIn(homeTrash("info")), IsEmpty());
}

TEST_F(DesktopTrashTest, PuttingBackMakesTheFoldersThatAreMissing) {
  const std::string path = thing("a/b/c/cache");
  const Manifest before = manifestOf(path);
  const TrashMove moved = move(path);
  fs::remove_all(scratch / "a");
  ASSERT_TRUE(putBack(moved, path));
  EXPECT_EQ(manifestOf(path), before);
}

TEST_F(DesktopTrashTest, ThingsOfOneNameLieBesideEachOther) {
  for (const char* parent : {"a", "b", "c"}) thing(std::string(parent) + "/cache");
  EXPECT_EQ(move(scratch / "a/cache").trashed, homeTrash("files/cache"));
  EXPECT_EQ(move(scratch / "b/cache").trashed, homeTrash("files/cache.2"));
  EXPECT_EQ(move(scratch / "c/cache").trashed, homeTrash("files/cache.3"));
  EXPECT_THAT(namesIn(homeTrash("info")),
              UnorderedElementsAre("cache.trashinfo", "cache.2.trashinfo", "cache.3.trashinfo"));
}

TEST_F(DesktopTrashTest, WhatSomebodyElseLeftInTheTrashIsNotReplaced) {
  fs::create_directories(homeTrash("files/cache"));
  fs::create_directories(homeTrash("info"));
  scratch.write("data/Trash/info/cache.2.trashinfo", "left behind");
  const std::string path = thing("cache");
  EXPECT_EQ(move(path).trashed, homeTrash("files/cache.3"));
  EXPECT_THAT(namesIn(homeTrash("files/cache")), IsEmpty());
  EXPECT_EQ(contentOf(homeTrash("info/cache.2.trashinfo")), "left behind");
  EXPECT_THAT(namesIn(homeTrash("info")),
              UnorderedElementsAre("cache.2.trashinfo", "cache.3.trashinfo"));
}

TEST_F(DesktopTrashTest, NamesOfAnyBytesAndLengthHaveAPlace) {
  for (const std::string& name : {std::string("a\nb"), std::string("\xff\xfe %"),
                                  std::string(255, 'n'), std::string(255, '\x80')}) {
    const std::string path = thing(name);
    const Manifest before = manifestOf(path);
    const TrashMove moved = move(path);
    ASSERT_EQ(moved.outcome, TrashOutcome::moved) << name;
    EXPECT_FALSE(scratch.has(name));
    ASSERT_TRUE(putBack(moved, path)) << name;
    EXPECT_EQ(manifestOf(path), before);
  }
}

TEST_F(DesktopTrashTest, ALongNameIsCutBetweenCharacters) {
  std::string name;
  for (int i = 0; i < 80; ++i) name += "\xe2\x82\xac";  // the euro sign, three bytes
  const TrashMove moved = move(thing(name));
  ASSERT_EQ(moved.outcome, TrashOutcome::moved);
  const std::string given = fs::path(*moved.trashed).filename().string();
  EXPECT_EQ(given, name.substr(0, given.size()));
  EXPECT_EQ(given.size() % 3, 0u);
}

TEST_F(DesktopTrashTest, WhatHasGoneIsGone) {
  const std::string path = thing("a/cache");
  const FileIdentity identity = identityOf(path);
  fs::remove_all(path);
  DesktopTrash trash(options);
  EXPECT_EQ(trash.moveToTrash(path, identity).outcome, TrashOutcome::gone);
  fs::remove_all(scratch / "a");
  EXPECT_EQ(trash.moveToTrash(path, identity).outcome, TrashOutcome::gone);
  EXPECT_FALSE(scratch.has("data"));
}

TEST_F(DesktopTrashTest, AFolderReplacedSinceItWasMeasuredStays) {
  const std::string path = thing("cache");
  const FileIdentity identity = identityOf(path);
  fs::remove_all(path);
  thing("cache");
  const Manifest before = manifestOf(path);
  EXPECT_EQ(DesktopTrash(options).moveToTrash(path, identity), TrashMove{});
  expectNothingMoved(path, before);
}

TEST_F(DesktopTrashTest, AFolderReplacedInTheLastMomentGoesBack) {
  const std::string path = thing("cache");
  const FileIdentity identity = identityOf(path);
  Manifest before;
  options.beforeMove = [&] {
    fs::rename(path, scratch / "aside");
    thing("cache");
    before = manifestOf(path);
  };
  EXPECT_EQ(DesktopTrash(options).moveToTrash(path, identity), TrashMove{});
  expectNothingMoved(path, before);
  EXPECT_EQ(identityOf(scratch / "aside"), identity);
}

TEST_F(DesktopTrashTest, ALinkInTheThingsPlaceStaysAndSoDoesWhatItNames) {
  const std::string path = thing("cache");
  const std::string precious = thing("precious");
  const Manifest before = manifestOf(precious);
  const FileIdentity identity = identityOf(path);
  fs::remove_all(path);
  fs::create_symlink(precious, path);
  EXPECT_EQ(DesktopTrash(options).moveToTrash(path, identity), TrashMove{});
  EXPECT_EQ(DesktopTrash(options).moveToTrash(path, identityOf(precious)), TrashMove{});
  expectNothingMoved(precious, before);
  EXPECT_TRUE(scratch.has("cache"));
}

TEST_F(DesktopTrashTest, APathThroughALinkMovesNothing) {
  const std::string path = thing("real/cache");
  const Manifest before = manifestOf(path);
  fs::create_symlink("real", scratch / "link");
  EXPECT_EQ(DesktopTrash(options).moveToTrash(scratch / "link/cache", identityOf(path)),
            TrashMove{});
  expectNothingMoved(path, before);
}

TEST_F(DesktopTrashTest, TheRootAndPathsThatAreNoneMoveNothing) {
  const FileIdentity root = factsAt(AT_FDCWD, "/").value().identity;
  for (const char* path : {"/", "", "relative", "/tmp/../tmp"}) {
    EXPECT_EQ(DesktopTrash(options).moveToTrash(path, root), TrashMove{}) << path;
  }
}

TEST_F(DesktopTrashTest, AFolderThatMayNotBeLeftStays) {
  const std::string path = thing("a/cache");
  const FileIdentity identity = identityOf(path);
  const Manifest before = manifestOf(path);
  ASSERT_EQ(::chmod(scratch.path().c_str(), 0755), 0);
  fs::create_directories(scratch / "data/Trash");
  ASSERT_EQ(::chmod((scratch / "data/Trash").c_str(), 0777), 0);
  ASSERT_EQ(::chmod((scratch / "a").c_str(), 0555), 0);
  {
    const OrdinaryUser user;
    EXPECT_EQ(DesktopTrash(options).moveToTrash(path, identity), TrashMove{});
  }
  expectNothingMoved(path, before);
  ASSERT_EQ(::chmod((scratch / "a").c_str(), 0755), 0);
}

TEST_F(DesktopTrashTest, AForbiddenPlaceIsNotTakenForAnEmptyOne) {
  const std::string path = thing("closed/cache");
  const FileIdentity identity = identityOf(path);
  ASSERT_EQ(::chmod(scratch.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((scratch / "closed").c_str(), 0), 0);
  {
    const OrdinaryUser user;
    EXPECT_EQ(DesktopTrash(options).moveToTrash(path, identity).outcome, TrashOutcome::failed);
  }
  ASSERT_EQ(::chmod((scratch / "closed").c_str(), 0755), 0);
  EXPECT_TRUE(scratch.has("closed/cache"));
}

TEST_F(DesktopTrashTest, WithoutRoomForTheFileThatTellsNothingMoves) {
  const std::string path = thing("cache");
  const Manifest before = manifestOf(path);
  const FileIdentity identity = identityOf(path);
  TrashMove moved;
  {
    const FullDisk full(10);
    moved = DesktopTrash(options).moveToTrash(path, identity);
  }
  EXPECT_EQ(moved, TrashMove{});
  expectNothingMoved(path, before);
}

TEST_F(DesktopTrashTest, OnAVolumeWithoutRoomForAnotherFileNothingMoves) {
  fs::create_directory(scratch / "volume");
  const OtherVolume volume(scratch / "volume", "size=1m,nr_inodes=12");
  const std::string path = thingAt(volume.path() + "/cache");
  const Manifest before = manifestOf(path);
  const FileIdentity identity = identityOf(path);
  // Where no small volume can be had, writing alone is made to fail.
  for (int i = 0; volume.isMounted() && i < 20; ++i) {
    std::ofstream(volume.path() + "/filler" + std::to_string(i));
  }
  TrashMove moved;
  {
    const FullDisk full(10);
    moved = DesktopTrash(options).moveToTrash(path, identity);
  }
  EXPECT_EQ(moved, TrashMove{});
  EXPECT_EQ(manifestOf(path), before);
}

TEST_F(DesktopTrashTest, AThingOnAnotherVolumeGoesToThatVolumesTrash) {
  fs::create_directory(scratch / "volume");
  const OtherVolume volume(scratch / "volume");
  const std::string path = thingAt(volume.path() + "/my cache");
  const Manifest before = manifestOf(path);
  const TrashMove moved = move(path);
  ASSERT_EQ(moved.outcome, TrashOutcome::moved);
  EXPECT_EQ(fs::path(*moved.trashed).parent_path(), volume.trash() + "/files");
  EXPECT_EQ(manifestOf(*moved.trashed), before);
  const std::string info =
      volume.trash() + "/info/" + fs::path(*moved.trashed).filename().string() + ".trashinfo";
  const std::string fromTop = volume.isMounted()
                                  ? "my%20cache"
                                  : fs::path(volume.path()).filename().string() + "/my%20cache";
  EXPECT_THAT(contentOf(info), HasSubstr("\nPath=" + fromTop + "\n"));
  EXPECT_THAT(namesIn(homeTrash("files")), IsEmpty());
  EXPECT_THAT(namesIn(homeTrash("info")), IsEmpty());

  ASSERT_TRUE(putBack(moved, path));
  EXPECT_EQ(manifestOf(path), before);
  EXPECT_FALSE(fs::exists(info));
}

TEST_F(DesktopTrashTest, WhenTheHomeTrashIsOnAnotherVolumeNothingIsCopied) {
  // The volume of the thing has no Trash that the user could make: its top is a file's place.
  fs::create_directory(scratch / "volume");
  const OtherVolume volume(scratch / "volume");
  options.dataFolder = volume.path() + "/data";
  options.mountinfo = scratch / "mountinfo";
  scratch.write("mountinfo", "1 0 0:1 / " + (scratch / "cache") + "/missing rw\n");
  const std::string path = thing("cache-on-disk");
  const Manifest before = manifestOf(path);
  EXPECT_EQ(move(path), TrashMove{});
  EXPECT_EQ(manifestOf(path), before);
  EXPECT_THAT(namesIn(options.dataFolder + "/Trash/files"), IsEmpty());
  EXPECT_THAT(namesIn(options.dataFolder + "/Trash/info"), IsEmpty());
}

TEST_F(DesktopTrashTest, ATrashFolderThatWandersToAnotherVolumeTakesNothing) {
  // "files" of the home Trash turns out to be on another volume than the Trash was made on.
  fs::create_directories(homeTrash("files"));
  const std::string path = thing("cache");
  const Manifest before = manifestOf(path);
  const OtherVolume volume(homeTrash("files"));
  scratch.write("mountinfo", "1 0 0:1 / /nowhere rw\n");
  options.mountinfo = scratch / "mountinfo";
  if (!volume.isMounted())
    fs::remove_all(homeTrash("files")), scratch.write("data/Trash/files", "");
  EXPECT_EQ(move(path), TrashMove{});
  EXPECT_EQ(manifestOf(path), before);
}

TEST_F(DesktopTrashTest, AVolumesOwnFolderAndOneThatHoldsAVolumeStay) {
  const std::string path = thing("item");
  fs::create_directory(path + "/mounted");
  const OtherVolume volume(path + "/mounted");
  std::ofstream(volume.path() + "/precious") << "content";
  if (!volume.isMounted()) {
    // As if it were.
    scratch.write("mountinfo", fmt::format("1 0 0:1 / / rw\n2 1 0:2 / {}/mounted rw\n", path));
    options.mountinfo = scratch / "mountinfo";
  }
  const Manifest before = manifestOf(path);
  EXPECT_EQ(move(path), TrashMove{});
  EXPECT_EQ(move(path + "/mounted"), TrashMove{});
  expectNothingMoved(path, before);
  EXPECT_EQ(contentOf(volume.path() + "/precious"), "content");
}

TEST_F(DesktopTrashTest, WhenNobodyTellsWhatIsMountedNothingMoves) {
  const std::string path = thing("cache");
  const Manifest before = manifestOf(path);
  options.mountinfo = scratch / "missing";
  EXPECT_EQ(move(path), TrashMove{});
  expectNothingMoved(path, before);
}

TEST_F(DesktopTrashTest, SomethingNewInTheOldPlaceKeepsTheThingInTheTrash) {
  const std::string path = thing("cache");
  const Manifest before = manifestOf(path);
  const TrashMove moved = move(path);
  using Maker = std::function<void()>;
  const Maker makers[] = {
      [&] { fs::create_directory(path); },
      [&] { scratch.write("cache", "new"); },
      [&] { fs::create_symlink("/etc", path); },
      [&] { fs::create_symlink("nowhere", path); },
      [&] { thing("cache"); },
  };
  for (const Maker& make : makers) {
    make();
    const Manifest inPlace = manifestOf(path);
    EXPECT_FALSE(putBack(moved, path));
    EXPECT_EQ(manifestOf(path), inPlace);
    EXPECT_EQ(manifestOf(*moved.trashed), before);
    EXPECT_THAT(namesIn(homeTrash("info")), ElementsAre("cache.trashinfo"));
    fs::remove_all(path);
  }
  EXPECT_TRUE(putBack(moved, path));
  EXPECT_EQ(manifestOf(path), before);
}

TEST_F(DesktopTrashTest, SomethingNewInTheLastMomentIsNotReplaced) {
  const std::string path = thing("cache");
  const TrashMove moved = move(path);
  const FileIdentity identity = identityOf(*moved.trashed);
  options.beforeMove = [&] { fs::create_directory(path); };
  EXPECT_FALSE(DesktopTrash(options).putBack(*moved.trashed, path, identity));
  EXPECT_TRUE(fs::is_empty(path));
  EXPECT_TRUE(fs::exists(*moved.trashed));
}

TEST_F(DesktopTrashTest, AnotherThingUnderItsNameInTheTrashIsNotPutBack) {
  const std::string path = thing("cache");
  const TrashMove moved = move(path);
  const FileIdentity identity = identityOf(*moved.trashed);
  fs::remove_all(*moved.trashed);
  DesktopTrash trash(options);
  EXPECT_FALSE(trash.putBack(*moved.trashed, path, identity));
  fs::create_directory(*moved.trashed);
  EXPECT_FALSE(trash.putBack(*moved.trashed, path, identity));
  EXPECT_FALSE(fs::exists(path));
  EXPECT_TRUE(fs::exists(*moved.trashed));
}

TEST_F(DesktopTrashTest, AThingReplacedInTheTrashInTheLastMomentStaysThere) {
  const std::string path = thing("cache");
  const TrashMove moved = move(path);
  const FileIdentity identity = identityOf(*moved.trashed);
  options.beforeMove = [&] {
    fs::rename(*moved.trashed, scratch / "aside");
    fs::create_directory(*moved.trashed);
  };
  EXPECT_FALSE(DesktopTrash(options).putBack(*moved.trashed, path, identity));
  EXPECT_FALSE(fs::exists(path));
  EXPECT_TRUE(fs::exists(*moved.trashed));
}

TEST_F(DesktopTrashTest, PuttingBackGoesThroughNoLink) {
  const std::string path = thing("a/cache");
  const TrashMove moved = move(path);
  fs::remove_all(scratch / "a");
  fs::create_directory(scratch / "outside");
  fs::create_symlink("outside", scratch / "a");
  EXPECT_FALSE(putBack(moved, path));
  EXPECT_TRUE(fs::is_empty(scratch / "outside"));
  EXPECT_TRUE(fs::exists(*moved.trashed));
}

TEST_F(DesktopTrashTest, AHomeTrashThatTheUserKeepsElsewhereIsUsed) {
  fs::create_directories(scratch / "elsewhere/Trash");
  fs::create_symlink("elsewhere", scratch / "data");
  EXPECT_EQ(move(thing("cache")).trashed, scratch / "elsewhere/Trash/files/cache");
}

TEST_F(DesktopTrashTest, AHomeTrashWhosePartsAreLinksIsNotUsed) {
  fs::create_directories(homeTrash("info"));
  fs::create_directory(scratch / "outside");
  fs::create_symlink(scratch / "outside", homeTrash("files"));
  scratch.write("mountinfo", "1 0 0:1 / /nowhere rw\n");
  options.mountinfo = scratch / "mountinfo";
  const std::string path = thing("cache");
  const Manifest before = manifestOf(path);
  EXPECT_EQ(move(path), TrashMove{});
  EXPECT_EQ(manifestOf(path), before);
  EXPECT_TRUE(fs::is_empty(scratch / "outside"));
}

class VolumeTrashTest : public testing::Test {
 protected:
  std::optional<std::string> path(uid_t uid = ::getuid()) {
    const auto trash = openVolumeTrash(scratch.path(), uid);
    if (!trash) return std::nullopt;
    EXPECT_EQ(trash->volume, scratch.path() + "/");
    EXPECT_TRUE(fs::is_directory(trash->path + "/files"));
    EXPECT_TRUE(fs::is_directory(trash->path + "/info"));
    return trash->path.substr(scratch.path().size() + 1);
  }
  std::string own() { return fmt::format(".Trash-{}", ::getuid()); }

  ScratchFolder scratch;
};

TEST_F(VolumeTrashTest, TheUserHasOneOfHisOwn) {
  EXPECT_EQ(path(), own());
  EXPECT_EQ(path(), own()) << "also when it is there already";
  struct stat status {};
  ASSERT_EQ(::stat((scratch / own()).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(VolumeTrashTest, ASharedOneIsUsedWhenItIsFitForIt) {
  fs::create_directory(scratch / ".Trash");
  ASSERT_EQ(::chmod((scratch / ".Trash").c_str(), 01777), 0);
  EXPECT_EQ(path(), fmt::format(".Trash/{}", ::getuid()));
}

TEST_F(VolumeTrashTest, ASharedOneThatIsNotStickyIsLeftAlone) {
  fs::create_directory(scratch / ".Trash");
  ASSERT_EQ(::chmod((scratch / ".Trash").c_str(), 0777), 0);
  EXPECT_EQ(path(), own());
  EXPECT_TRUE(fs::is_empty(scratch / ".Trash"));
}

TEST_F(VolumeTrashTest, ASharedOneThatIsALinkIsLeftAlone) {
  fs::create_directory(scratch / "target");
  ASSERT_EQ(::chmod((scratch / "target").c_str(), 01777), 0);
  fs::create_symlink("target", scratch / ".Trash");
  EXPECT_EQ(path(), own());
  EXPECT_TRUE(fs::is_empty(scratch / "target"));
}

TEST_F(VolumeTrashTest, OneThatIsALinkAFileOrSomebodyElsesIsNone) {
  fs::create_directory(scratch / "target");
  fs::create_symlink("target", scratch / own());
  EXPECT_EQ(path(), std::nullopt);
  fs::remove(scratch / own());
  scratch.write(own(), "a file");
  EXPECT_EQ(path(), std::nullopt);
  fs::remove(scratch / own());
  const uid_t other = ::getuid() + 1;
  fs::create_directory(scratch / fmt::format(".Trash-{}", other));
  EXPECT_EQ(path(other), std::nullopt);
  EXPECT_TRUE(fs::is_empty(scratch / "target"));
}

TEST_F(VolumeTrashTest, AVolumeThatIsNotThereHasNone) {
  EXPECT_FALSE(openVolumeTrash(scratch / "missing", ::getuid()));
}

}  // namespace
}  // namespace embrix
