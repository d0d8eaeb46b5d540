#include "base/whole_file.h"

#include <sys/stat.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/full_disk.h"
#include "fakes/scratch_folder.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

TEST(WholeFileTest, WhatIsWrittenIsReadBack) {
  const ScratchFolder folder;
  const std::string bytes("a\0b\nc\xff", 6);
  EXPECT_TRUE(writeFileAtomically(folder / "file", bytes));
  EXPECT_EQ(readWholeFile(folder / "file", 100), bytes);
  EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(WholeFileTest, ALongFileIsWrittenAndReadWhole) {
  const ScratchFolder folder;
  const std::string bytes(3'000'000, 'x');
  EXPECT_TRUE(writeFileAtomically(folder / "file", bytes));
  EXPECT_EQ(readWholeFile(folder / "file", bytes.size()), bytes);
}

TEST(WholeFileTest, ManyPiecesStandOneBehindTheOther) {
  const ScratchFolder folder;
  std::vector<std::string> texts;
  std::string whole;
  for (int i = 0; i < 3000; ++i) {
    texts.emplace_back(static_cast<std::size_t>(i % 7), static_cast<char>('a' + i % 26));
    whole += texts.back();
  }
  const std::vector<std::string_view> pieces(texts.begin(), texts.end());
  EXPECT_TRUE(writeFileAtomically(folder / "file", pieces));
  EXPECT_EQ(folder.read("file"), whole);
}

TEST(WholeFileTest, AFileAboveTheLimitIsAbsent) {
  const ScratchFolder folder;
  folder.write("file", "12345");
  EXPECT_EQ(readWholeFile(folder / "file", 5), "12345");
  EXPECT_EQ(readWholeFile(folder / "file", 4), std::nullopt);
}

TEST(WholeFileTest, NothingThatIsNoRegularFileIsRead) {
  const ScratchFolder folder;
  fs::create_directory(folder / "folder");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(readWholeFile(folder / "missing", 100), std::nullopt);
  EXPECT_EQ(readWholeFile(folder / "folder", 100), std::nullopt);
  EXPECT_EQ(readWholeFile(folder / "pipe", 100), std::nullopt);
  EXPECT_EQ(readWholeFile("/dev/zero", 100), std::nullopt);
}

TEST(WholeFileTest, OnlyTheOwnerCanReadWhatIsWritten) {
  const ScratchFolder folder;
  folder.write("file", "old");
  fs::permissions(folder / "file", fs::perms::all);
  EXPECT_TRUE(writeFileAtomically(folder / "file", "new"));
  EXPECT_EQ(fs::status(folder / "file").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST(WholeFileTest, ALinkIsReplacedAndItsTargetUntouched) {
  const ScratchFolder folder;
  folder.write("target", "theirs");
  fs::create_symlink(folder / "target", folder / "file");
  EXPECT_TRUE(writeFileAtomically(folder / "file", "ours"));
  EXPECT_FALSE(fs::is_symlink(folder / "file"));
  EXPECT_EQ(folder.read("file"), "ours");
  EXPECT_EQ(folder.read("target"), "theirs");
}

TEST(WholeFileTest, AFullDiskLeavesTheOldFileAndNothingBeside) {
  const ScratchFolder folder;
  folder.write("file", "old");
  {
    const FullDisk disk(10);
    EXPECT_FALSE(writeFileAtomically(folder / "file", std::string(100, 'n')));
    EXPECT_FALSE(writeFileAtomically(folder / "other", std::string(100, 'n')));
  }
  EXPECT_EQ(folder.read("file"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(WholeFileTest, ARenameThatFailsLeavesNothingBeside) {
  const ScratchFolder folder;
  fs::create_directories(folder / "file/occupied");
  EXPECT_FALSE(writeFileAtomically(folder / "file", "new"));
  EXPECT_THAT(folder.names(), ElementsAre("file"));
  EXPECT_TRUE(folder.has("file/occupied"));
}

TEST(WholeFileTest, WithoutItsFolderNothingIsWritten) {
  const ScratchFolder folder;
  folder.write("file", "old");
  EXPECT_FALSE(writeFileAtomically(folder / "missing/file", "new"));
  EXPECT_FALSE(writeFileAtomically(folder / "file/file", "new"));
  EXPECT_THAT(folder.names(), UnorderedElementsAre("file"));
}

TEST(WholeFileTest, APathWithoutFolderIsBelowTheWorkingFolder) {
  const ScratchFolder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());
  EXPECT_TRUE(writeFileAtomically("file", "new"));
  fs::current_path(before);
  EXPECT_EQ(folder.read("file"), "new");
}

TEST(WholeFileTest, PiecesAreWrittenOneBehindTheOther) {
  const ScratchFolder folder;
  const std::string long1(100'000, 'x');
  const std::vector<std::string_view> pieces = {"[", "", long1, "]"};
  EXPECT_TRUE(writeFileAtomically(folder / "file", pieces));
  EXPECT_EQ(folder.read("file"), "[" + long1 + "]");
  EXPECT_TRUE(writeFileAtomically(folder / "file", std::vector<std::string_view>()));
  EXPECT_EQ(folder.read("file"), "");
}

TEST(WholeFileTest, ADiskThatFillsUpBetweenPiecesLeavesTheOldFile) {
  const ScratchFolder folder;
  folder.write("file", "old");
  {
    const FullDisk disk(10);
    const std::vector<std::string_view> pieces = {"12345", "67890", "1"};
    EXPECT_FALSE(writeFileAtomically(folder / "file", pieces));
  }
  EXPECT_EQ(folder.read("file"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(WholeFileTest, OfSeveralFilesOneThatFailsKeepsNoneOfTheOthersFromItsPlace) {
  const ScratchFolder folder;
  fs::create_directories(folder / "b/full");
  const std::vector<NewFile> files = {{folder / "a", {"first ", "file"}},
                                      {folder / "b", {"no file takes the place of a folder"}},
                                      {folder / "missing/c", {"nowhere"}},
                                      {folder / "d", {}},
                                      {folder / "e", {"last"}}};
  EXPECT_FALSE(writeFilesAtomically(folder / ".", files));
  EXPECT_EQ(folder.read("a"), "first file");
  EXPECT_EQ(folder.read("d"), "");
  EXPECT_EQ(folder.read("e"), "last");
  EXPECT_THAT(folder.names(), UnorderedElementsAre("a", "b", "d", "e"));
  EXPECT_TRUE(writeFilesAtomically(folder / ".", std::span(files).first(1)));
}

TEST(WholeFileTest, WhatKilledRunsLeftHalfWrittenIsRemovedAndNothingElse) {
  const ScratchFolder folder;
  for (const char* name :
       {"file", "file.new-a1B2c3", "file.new-zzzzzz", "file.backup", "file.backup12345",
        "file.new-", "file.new-1234567", "other.new-a1B2c3", "xfile.new-a1B2c3"}) {
    folder.write(name, "bytes");
  }
  fs::create_directory(folder / "file.new-folder");
  removeHalfWritten(folder / "file");
  EXPECT_THAT(folder.names(),
              UnorderedElementsAre("file", "file.backup", "file.backup12345", "file.new-",
                                   "file.new-1234567", "file.new-folder", "other.new-a1B2c3",
                                   "xfile.new-a1B2c3"));
  removeHalfWritten(folder / "missing/file");
}

}  // namespace
}  // namespace embrix
