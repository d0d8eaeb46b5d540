#include "hosts/replay/recording_writer.h"

#include <filesystem>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "fakes/full_disk.h"
#include "fakes/scratch_folder.h"

namespace embrix {
namespace {

using testing::HasSubstr;

class RecordingWriterTest : public testing::Test {
 protected:
  const ScratchFolder folder;

  std::shared_ptr<RecordingWriter> opened(std::string_view name) {
    return std::get<std::shared_ptr<RecordingWriter>>(RecordingWriter::open(folder / name));
  }
  std::string problemOf(const std::string& path) {
    const auto result = RecordingWriter::open(path);
    const auto* problem = std::get_if<RecordingProblem>(&result);
    return problem == nullptr ? "" : problem->text;
  }
  mode_t modeOf(std::string_view name) {
    struct stat status {};
    EXPECT_EQ(stat((folder / name).c_str(), &status), 0);
    return status.st_mode & 07777;
  }
};

TEST_F(RecordingWriterTest, LinesAreThereAsSoonAsTheyAreAppended) {
  const auto writer = opened("r.jsonl");
  EXPECT_EQ(folder.read("r.jsonl"), "");
  writer->append("{}");
  EXPECT_EQ(folder.read("r.jsonl"), "{}\n");
  writer->append("[1]");
  EXPECT_EQ(folder.read("r.jsonl"), "{}\n[1]\n");
  EXPECT_EQ(writer->problem(), "");
}

TEST_F(RecordingWriterTest, TheFileIsForItsOwnerAlone) {
  opened("new.jsonl");
  EXPECT_EQ(modeOf("new.jsonl"), 0600U);
  folder.write("old.jsonl", "an older recording");
  std::filesystem::permissions(folder / "old.jsonl", std::filesystem::perms(0644));
  opened("old.jsonl");
  EXPECT_EQ(modeOf("old.jsonl"), 0600U);
  EXPECT_EQ(folder.read("old.jsonl"), "");
}

TEST_F(RecordingWriterTest, NothingIsWrittenThroughALink) {
  folder.write("precious", "kept");
  std::filesystem::create_symlink("precious", folder / "link");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  for (const char* name : {"link", "dangling"}) {
    EXPECT_EQ(problemOf(folder / name),
              "cannot record to " + (folder / name) + ": it is a symbolic link");
  }
  EXPECT_EQ(folder.read("precious"), "kept");
  EXPECT_FALSE(folder.has("nowhere"));
}

TEST_F(RecordingWriterTest, WhatIsNoFileIsLeftAlone) {
  std::filesystem::create_directory(folder / "folder");
  EXPECT_THAT(problemOf(folder / "folder"), HasSubstr("directory"));
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_THAT(problemOf(folder / "pipe"), HasSubstr("cannot record to "));
  EXPECT_EQ(problemOf("/dev/null"), "cannot record to /dev/null: it is no regular file");
}

TEST_F(RecordingWriterTest, AMissingFolderIsAProblem) {
  EXPECT_EQ(problemOf(folder / "no/r.jsonl"),
            "cannot record to " + (folder / "no/r.jsonl") + ": No such file or directory");
  EXPECT_THAT(problemOf(""), HasSubstr("cannot record to : "));
}

TEST_F(RecordingWriterTest, ANameCannotActOnTheTerminal) {
  EXPECT_THAT(problemOf("/no/\x1b[2J\n"), HasSubstr("/no/\\x1b[2J\\x0a: "));
}

TEST_F(RecordingWriterTest, AFullDiskIsAProblemAndEndsTheRecording) {
  const auto writer = opened("r.jsonl");
  {
    const FullDisk disk(10);
    writer->append("12345");
    EXPECT_EQ(writer->problem(), "");
    writer->append("67890");
    EXPECT_EQ(writer->problem(), "cannot record to " + (folder / "r.jsonl") + ": File too large");
  }
  writer->append("there is room again");
  EXPECT_EQ(folder.read("r.jsonl"), "12345\n6789");
  EXPECT_NE(writer->problem(), "");
}

TEST_F(RecordingWriterTest, ALineThatCouldNotBeReadBackIsNotWritten) {
  const auto writer = opened("r.jsonl");
  writer->append(std::string(kLongestRecordingLine + 1, ' '));
  EXPECT_EQ(folder.read("r.jsonl"), "");
  EXPECT_THAT(writer->problem(), HasSubstr("one tick holds more than a line can"));
}

}  // namespace
}  // namespace embrix
