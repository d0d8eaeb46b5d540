#include "hosts/linux/tree_measure.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <thread>

#include "fakes/scratch_folder.h"
#include "ordinary_user.h"
#include "other_volume.h"

namespace embrix {
namespace {

namespace fs = std::filesystem;

std::int64_t onDisk(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_blocks * 512;
}

// The rule in its plainest form: regular files, each inode once.
std::int64_t plainSum(const std::string& root) {
  std::set<ino_t> met;
  std::int64_t bytes = 0;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    struct stat status {};
    ::lstat(entry.path().c_str(), &status);
    if (S_ISREG(status.st_mode) && met.insert(status.st_ino).second)
      bytes += status.st_blocks * 512;
  }
  return bytes;
}

class TreeMeasureTest : public testing::Test {
 protected:
  std::optional<std::int64_t> measure(const std::string& path,
                                      const TreeMeasureOptions& options = {}) {
    return measureTree(Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), watch,
                       options);
  }
  void folder(const std::string& name) { fs::create_directories(scratch / name); }
  void file(const std::string& name, std::size_t bytes) {
    fs::create_directories(fs::path(scratch / name).parent_path());
    scratch.write(name, std::string(bytes, 'x'));
  }

  ScratchFolder scratch;
  MeasureWatch watch;
};

TEST_F(TreeMeasureTest, RegularFilesCountWithTheRoomTheyTake) {
  file("a", 100);
  file(".hidden/b", 9000);
  file("App.app/Contents/c", 5000);
  folder("empty");
  ASSERT_EQ(::truncate((scratch / "a").c_str(), 1 << 30), 0);
  const std::int64_t expected = onDisk(scratch / "a") + onDisk(scratch / ".hidden/b") +
                                onDisk(scratch / "App.app/Contents/c");
  EXPECT_EQ(measure(scratch.path()), expected);
  EXPECT_LT(expected, 1 << 20) << "the gigabyte in a is not there";
  EXPECT_EQ(watch.files(), 3u);
  EXPECT_EQ(watch.bytes(), expected);
}

TEST_F(TreeMeasureTest, AnEmptyFolderAndNoneAtAllTakeNothing) {
  EXPECT_EQ(measure(scratch.path()), 0);
  EXPECT_EQ(measure(scratch / "missing"), 0);
}

TEST_F(TreeMeasureTest, SeveralNamesOfOneFileCountOnce) {
  file("a/one", 50'000);
  folder("b");
  fs::create_hard_link(scratch / "a/one", scratch / "a/two");
  fs::create_hard_link(scratch / "a/one", scratch / "b/three");
  file("b/other", 5'000);
  EXPECT_EQ(measure(scratch.path()), onDisk(scratch / "a/one") + onDisk(scratch / "b/other"));
}

TEST_F(TreeMeasureTest, AFileWithANameElsewhereCounts) {
  file("inside/one", 50'000);
  fs::create_hard_link(scratch / "inside/one", scratch / "outside");
  EXPECT_EQ(measure(scratch / "inside"), onDisk(scratch / "outside"));
}

TEST_F(TreeMeasureTest, LinksAreNotFollowed) {
  file("outside/big", 500'000);
  file("inside/small", 100);
  fs::create_symlink(scratch / "outside", scratch / "inside/folder");
  fs::create_symlink(scratch / "outside/big", scratch / "inside/file");
  fs::create_symlink("..", scratch / "inside/up");
  EXPECT_EQ(measure(scratch / "inside"), onDisk(scratch / "inside/small"));
}

TEST_F(TreeMeasureTest, WhatIsNoRegularFileTakesNothing) {
  ASSERT_EQ(::mkfifo((scratch / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(measure(scratch.path()), 0);
}

TEST_F(TreeMeasureTest, NamesOfAnyBytesAreNames) {
  file("a\nb/c\xff", 5'000);
  file(std::string(255, 'n'), 5'000);
  EXPECT_EQ(measure(scratch.path()), plainSum(scratch.path()));
  EXPECT_EQ(watch.files(), 2u);
}

TEST_F(TreeMeasureTest, AnUnreadableChildAddsNothing) {
  file("open/a", 5'000);
  file("closed/b", 50'000);
  file("c", 5'000);
  const std::int64_t expected = onDisk(scratch / "open/a") + onDisk(scratch / "c");
  ASSERT_EQ(::chmod(scratch.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((scratch / "closed").c_str(), 0), 0);
  {
    const OrdinaryUser user;
    for (const bool kernelKeepsToVolume : {true, false}) {
      EXPECT_EQ(measure(scratch.path(), {.kernelKeepsToVolume = kernelKeepsToVolume}), expected);
    }
  }
  ASSERT_EQ(::chmod((scratch / "closed").c_str(), 0755), 0);
}

TEST_F(TreeMeasureTest, AnotherVolumeIsNotEntered) {
  file("item/a", 5'000);
  folder("item/mounted");
  const OtherVolume other(scratch / "item/mounted");
  const std::string inside = other.path() + "/big";
  const std::string item = other.isMounted() ? scratch / "item" : "/dev";
  for (const bool kernelKeepsToVolume : {true, false}) {
    fs::remove(inside);
    const auto before = measure(item, {.kernelKeepsToVolume = kernelKeepsToVolume});
    std::ofstream(inside) << std::string(3'000'000, 'x');
    EXPECT_EQ(measure(item, {.kernelKeepsToVolume = kernelKeepsToVolume}), before);
    EXPECT_GE(measure(other.path()), 3'000'000) << "asked for itself, it is measured";
  }
}

TEST_F(TreeMeasureTest, ADeepTreeIsMeasuredWithFewFoldersOpen) {
  constexpr int kDepth = 60;
  std::string path = scratch.path();
  for (int i = 0; i < kDepth; ++i) {
    path += "/d";
    fs::create_directory(path);
    std::ofstream(path + "/before") << std::string(5'000, 'x');
    fs::create_directories(path + "/e/f");
    std::ofstream(path + "/e/f/beside") << std::string(5'000, 'x');
  }
  const std::int64_t expected = plainSum(scratch.path());
  for (const std::size_t openFolders : {2u, 3u, 16u}) {
    for (const bool kernelKeepsToVolume : {true, false}) {
      EXPECT_EQ(measure(scratch.path(), {.threads = 1,
                                         .openFolders = openFolders,
                                         .kernelKeepsToVolume = kernelKeepsToVolume}),
                expected);
    }
  }
}

TEST_F(TreeMeasureTest, OpenFilesStayBoundedWhateverTheTree) {
  // 20 folders, each 30 deep.
  for (int i = 0; i < 20; ++i) {
    std::string path = scratch / std::to_string(i);
    fs::create_directory(path);
    for (int j = 0; j < 30; ++j) {
      path += "/d";
      fs::create_directory(path);
      std::ofstream(path + "/f") << "x";
    }
  }
  const std::int64_t expected = plainSum(scratch.path());
  const auto openNow = static_cast<rlim_t>(
      std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
  constexpr TreeMeasureOptions kOptions{.threads = 4, .openFolders = 4, .filesAlone = 5};
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  // Four open on the way of each thread, one that it is about to enter, one handed over.
  const rlimit tight{openNow + 4 * (4 + 1 + 1), before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
  const auto measured = measure(scratch.path(), kOptions);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_EQ(measured, expected);
  EXPECT_EQ(watch.files(), 600u);
}

TEST_F(TreeMeasureTest, AFolderOfManyFilesIsReadInPieces) {
  for (int i = 0; i < 1'500; ++i) {
    scratch.write("a-file-with-a-rather-long-name-" + std::to_string(i), "x");
  }
  EXPECT_EQ(measure(scratch.path()), plainSum(scratch.path()));
  EXPECT_EQ(watch.files(), 1'500u);
}

TEST_F(TreeMeasureTest, RandomTreesAreMeasuredAlikeByAnyNumberOfThreads) {
  std::mt19937 random(7);
  std::vector<std::string> folders{scratch.path()};
  std::vector<std::string> files;
  for (int i = 0; i < 600; ++i) {
    const std::string& parent = folders[random() % folders.size()];
    const std::string path = parent + "/" + std::to_string(i);
    switch (random() % 10) {
      case 0:
      case 1:
        fs::create_directory(path);
        folders.push_back(path);
        break;
      case 2:
        if (!files.empty()) fs::create_hard_link(files[random() % files.size()], path);
        break;
      case 3:
        fs::create_symlink(folders[random() % folders.size()], path);
        break;
      default:
        std::ofstream(path) << std::string(random() % 20'000, 'x');
        files.push_back(path);
    }
  }
  const std::int64_t expected = plainSum(scratch.path());
  for (const int threads : {1, 2, 3, 8, 32}) {
    for (const std::size_t openFolders : {2u, 16u}) {
      for (const bool kernelKeepsToVolume : {true, false}) {
        EXPECT_EQ(measure(scratch.path(), {.threads = threads,
                                           .openFolders = openFolders,
                                           .filesAlone = 5,
                                           .kernelKeepsToVolume = kernelKeepsToVolume}),
                  expected)
            << threads << " threads, " << openFolders << " folders open";
      }
    }
  }
}

TEST_F(TreeMeasureTest, AnAbandonedMeasurementHasNoResult) {
  file("a/b", 5'000);
  file("c", 5'000);
  watch.abandon();
  EXPECT_EQ(measure(scratch.path()), std::nullopt);
  EXPECT_EQ(watch.files(), 0u);
}

TEST_F(TreeMeasureTest, AFileThatGrowsCountsWithSomeSizeItHad) {
  file("growing", 4'096);
  for (int i = 0; i < 200; ++i) scratch.write("f" + std::to_string(i), "x");
  const std::int64_t before = plainSum(scratch.path());
  std::atomic<bool> done = false;
  std::thread writer([&] {
    std::ofstream growing(scratch / "growing", std::ios::app);
    while (!done) growing << std::string(4'096, 'x') << std::flush;
  });
  const auto measured = measure(scratch.path());
  done = true;
  writer.join();
  ASSERT_TRUE(measured);
  EXPECT_GE(*measured, before);
  EXPECT_LE(*measured, plainSum(scratch.path()));
}

TEST_F(TreeMeasureTest, ATreeThatIsTornApartMeanwhileIsMeasuredInPart) {
  // A branch is moved away and back while the walk may be deep inside it.
  std::string path = scratch / "tree/branch";
  fs::create_directories(path);
  for (int i = 0; i < 100; ++i) {
    path += "/d";
    fs::create_directory(path);
    std::ofstream(path + "/f") << std::string(5'000, 'x');
  }
  folder("aside");
  const std::int64_t whole = plainSum(scratch / "tree");
  std::atomic<bool> done = false;
  std::thread mover([&] {
    while (!done) {
      fs::rename(scratch / "tree/branch", scratch / "aside/branch");
      fs::rename(scratch / "aside/branch", scratch / "tree/branch");
    }
  });
  for (int i = 0; i < 20; ++i) {
    const auto measured =
        measure(scratch / "tree", {.threads = 2, .openFolders = 2, .filesAlone = 5});
    ASSERT_TRUE(measured);
    EXPECT_GE(*measured, 0);
    EXPECT_LE(*measured, whole);
  }
  done = true;
  mover.join();
}

}  // namespace
}  // namespace embrix
