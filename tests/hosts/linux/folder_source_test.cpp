#include "hosts/linux/folder_source.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "fakes/scratch_folder.h"
#include "hosts/linux/linkless_path.h"
#include "ordinary_user.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

class LinuxFolderSourceTest : public testing::Test {
 protected:
  void setModified(const std::string& name, std::int64_t seconds, long nanoseconds) {
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
                               {.tv_sec = seconds, .tv_nsec = nanoseconds}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (scratch / name).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  }

  ScratchFolder scratch;
  LinuxFolderSource source{{}};
};

TEST_F(LinuxFolderSourceTest, AListHoldsEverythingInAFolderAsItIs) {
  fs::create_directory(scratch / "folder");
  fs::create_directory(scratch / ".hidden");
  scratch.write("a\nb", "x");
  fs::create_symlink("folder", scratch / "link");
  fs::create_symlink("nowhere", scratch / "dangling");
  ASSERT_EQ(::mkfifo((scratch / "pipe").c_str(), 0600), 0);
  setModified("folder", 1'750'000'000, 500'000'000);
  setModified("link", 1'000, 0);

  std::map<std::string, FolderEntry> byName;
  for (const FolderEntry& entry : source.list(scratch.path())) byName[entry.name] = entry;
  ASSERT_EQ(byName.size(), 6u);
  EXPECT_EQ(byName["folder"], (FolderEntry{.name = "folder",
                                           .kind = FileKind::folder,
                                           .modified = 1'750'000'000.5,
                                           .hidden = false}));
  EXPECT_EQ(byName["link"].kind, FileKind::link);
  EXPECT_EQ(byName["link"].modified, 1'000);
  EXPECT_EQ(byName["dangling"].kind, FileKind::link);
  EXPECT_EQ(byName["a\nb"].kind, FileKind::file);
  EXPECT_EQ(byName["pipe"].kind, FileKind::other);
  EXPECT_TRUE(byName[".hidden"].hidden);
}

TEST_F(LinuxFolderSourceTest, WhatIsNoFolderOrForbiddenHasNoList) {
  scratch.write("file", "x");
  fs::create_directory(scratch / "folder");
  scratch.write("folder/x", "x");
  fs::create_symlink("folder", scratch / "link");
  EXPECT_THAT(source.list(scratch / "file"), IsEmpty());
  EXPECT_THAT(source.list(scratch / "missing"), IsEmpty());
  EXPECT_THAT(source.list(scratch / "link"), IsEmpty());
  EXPECT_THAT(source.list(scratch / "folder/../folder"), IsEmpty());
  EXPECT_THAT(source.list(""), IsEmpty());
  ASSERT_EQ(::chmod(scratch.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((scratch / "folder").c_str(), 0), 0);
  {
    const OrdinaryUser user;
    EXPECT_THAT(source.list(scratch / "folder"), IsEmpty());
  }
  ASSERT_EQ(::chmod((scratch / "folder").c_str(), 0755), 0);
}

TEST_F(LinuxFolderSourceTest, FactsAreOfTheThingItself) {
  fs::create_directory(scratch / "folder");
  fs::create_symlink("folder", scratch / "link");
  setModified("folder", 7, 250'000'000);
  const auto folder = source.facts(scratch / "folder");
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->kind, FileKind::folder);
  EXPECT_EQ(folder->modified, 7.25);
  const auto link = source.facts(scratch / "link");
  ASSERT_TRUE(link);
  EXPECT_EQ(link->kind, FileKind::link);
  EXPECT_EQ(source.facts(scratch / "missing"), std::nullopt);
  EXPECT_EQ(source.facts(scratch / "link/x"), std::nullopt);
  EXPECT_EQ(source.facts("/")->kind, FileKind::folder);
}

TEST_F(LinuxFolderSourceTest, ANewFolderUnderAnOldNameIsAnother) {
  // File systems give the inode of a folder that is gone to the next one.
  fs::create_directory(scratch / "folder");
  const auto before = source.facts(scratch / "folder");
  fs::remove(scratch / "folder");
  fs::create_directory(scratch / "folder");
  const auto after = source.facts(scratch / "folder");
  ASSERT_TRUE(before && after);
  EXPECT_NE(before->identity, after->identity);
}

TEST_F(LinuxFolderSourceTest, AFolderStaysTheSameWhenItIsMovedOrFilled) {
  fs::create_directory(scratch / "folder");
  const auto before = source.facts(scratch / "folder");
  scratch.write("folder/x", "x");
  fs::rename(scratch / "folder", scratch / "moved");
  const auto after = source.facts(scratch / "moved");
  ASSERT_TRUE(before && after);
  EXPECT_EQ(before->identity, after->identity);
}

TEST_F(LinuxFolderSourceTest, ResolvingFollowsEveryLink) {
  const std::string real = fs::canonical(scratch.path()).string();
  fs::create_directories(scratch / "a/b");
  fs::create_symlink("a", scratch / "first");
  fs::create_symlink("first/b", scratch / "second");
  fs::create_symlink("missing", scratch / "dangling");
  fs::create_symlink("circle", scratch / "circle");
  EXPECT_EQ(source.resolved(scratch / "second"), real + "/a/b");
  EXPECT_EQ(source.resolved(scratch / "a/../a"), real + "/a");
  EXPECT_EQ(source.resolved(scratch / "dangling"), std::nullopt);
  EXPECT_EQ(source.resolved(scratch / "circle"), std::nullopt);
  EXPECT_EQ(source.resolved(""), std::nullopt);
  EXPECT_TRUE(source.exists(scratch / "second"));
  EXPECT_FALSE(source.exists(scratch / "dangling"));
}

TEST_F(LinuxFolderSourceTest, AFolderIsMeasuredOnlyByAPathWithoutLinks) {
  fs::create_directories(scratch / "a/b");
  scratch.write("a/b/x", std::string(5'000, 'x'));
  fs::create_symlink("a", scratch / "link");
  MeasureWatch watch;
  EXPECT_GE(source.measure(scratch / "a", watch), 5'000);
  EXPECT_EQ(source.measure(scratch / "link", watch), 0);
  EXPECT_EQ(source.measure(scratch / "link/b", watch), 0);
  EXPECT_EQ(source.measure(scratch / "a/b/x", watch), 0);
}

TEST_F(LinuxFolderSourceTest, LookingLeavesTheDateOfLastAccessAlone) {
  fs::create_directories(scratch / "a/b");
  const timespec old[2] = {{.tv_sec = 1'000, .tv_nsec = 0}, {.tv_sec = 2'000, .tv_nsec = 0}};
  for (const char* name : {"a", "a/b"}) {
    ASSERT_EQ(::utimensat(AT_FDCWD, (scratch / name).c_str(), old, 0), 0);
  }
  MeasureWatch watch;
  source.list(scratch / "a");
  source.measure(scratch / "a", watch);
  for (const char* name : {"a", "a/b"}) {
    struct stat status {};
    ASSERT_EQ(::stat((scratch / name).c_str(), &status), 0);
    EXPECT_EQ(status.st_atim.tv_sec, 1'000) << name;
  }
}

TEST(BaseFoldersTest, OnlyAbsolutePathsReplaceTheUsualFolders) {
  const struct {
    const char *cache, *data;
    BaseFolders expected;
  } rows[] = {
      {nullptr, nullptr, {"/home/ada/.cache", "/home/ada/.local/share"}},
      {"", "", {"/home/ada/.cache", "/home/ada/.local/share"}},
      {"cache", "./data", {"/home/ada/.cache", "/home/ada/.local/share"}},
      {"/quick/", "/kept", {"/quick", "/kept"}},
      {"/", nullptr, {"/", "/home/ada/.local/share"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(baseFolders("/home/ada", row.cache, row.data), row.expected);
  }
}

class LinklessPathTest : public testing::Test {
 protected:
  ScratchFolder scratch;
};

TEST_F(LinklessPathTest, APathThroughALinkLeadsNowhere) {
  fs::create_directories(scratch / "a/b");
  fs::create_symlink("a", scratch / "link");
  scratch.write("file", "x");
  const struct {
    std::string path;
    int error;
  } rows[] = {
      {scratch / "link/b/c", ENOTDIR},
      {scratch / "file/x", ENOTDIR},
      {scratch / "missing/x", ENOENT},
      {scratch / "a/./b", EINVAL},
      {scratch / "a/../a", EINVAL},
      {"a/b", EINVAL},
      {"", EINVAL},
      {scratch.path() + std::string("/a\0b", 4), EINVAL},
  };
  for (const auto& row : rows) {
    EXPECT_FALSE(linklessPlace(row.path).folder.isOpen()) << row.path;
    EXPECT_EQ(errno, row.error) << row.path;
  }
}

TEST_F(LinklessPathTest, APlaceIsANameInAFolderWhetherOrNotItIsTaken) {
  const LinklessPlace free = linklessPlace(scratch / "free");
  EXPECT_TRUE(free.folder.isOpen());
  EXPECT_EQ(free.name, "free");
  const LinklessPlace root = linklessPlace("/");
  EXPECT_TRUE(root.folder.isOpen());
  EXPECT_EQ(root.name, "");
}

TEST_F(LinklessPathTest, MissingFoldersAreMadeAboveAPlaceAndNotThroughALink) {
  EXPECT_TRUE(linklessPlaceMade(scratch / "a/b/c/thing").folder.isOpen());
  EXPECT_TRUE(fs::is_directory(scratch / "a/b/c"));
  EXPECT_FALSE(scratch.has("a/b/c/thing"));
  fs::create_directory(scratch / "outside");
  fs::create_symlink("outside", scratch / "link");
  EXPECT_FALSE(linklessPlaceMade(scratch / "link/new/thing").folder.isOpen());
  EXPECT_TRUE(fs::is_empty(scratch / "outside"));
}

}  // namespace
}  // namespace embrix
