#include "entry/records_lock.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "fakes/scratch_folder.h"

namespace embrix {
namespace {

TEST(RecordsLockTest, OneProgramAtATimeHoldsAFolder) {
  const ScratchFolder folder;
  std::optional<RecordsLock> first(folder / "records");
  EXPECT_FALSE(first->isHeldByAnother());
  EXPECT_TRUE(RecordsLock(folder / "records").isHeldByAnother());
  EXPECT_FALSE(RecordsLock(folder / "others").isHeldByAnother());
  first.reset();
  EXPECT_FALSE(RecordsLock(folder / "records").isHeldByAnother());
}

TEST(RecordsLockTest, TheFolderIsMade) {
  const ScratchFolder folder;
  const RecordsLock lock(folder / "a/b/records");
  EXPECT_TRUE(folder.has("a/b/records/embrix.lock"));
}

TEST(RecordsLockTest, WhereNoLockCanBeHadTheFolderIsNobodys) {
  const ScratchFolder folder;
  folder.write("file", "");
  std::filesystem::create_directories(folder / "lock-is-a-folder/embrix.lock");
  std::filesystem::create_directories(folder / "lock-is-a-link");
  std::filesystem::create_symlink(folder / "file", folder / "lock-is-a-link/embrix.lock");
  for (const std::string& where :
       {std::string(), folder / "file", folder / "file/records", folder / "lock-is-a-folder",
        folder / "lock-is-a-link", std::string("/proc/none"), std::string("\0", 1)}) {
    EXPECT_FALSE(RecordsLock(where).isHeldByAnother()) << where;
  }
}

}  // namespace
}  // namespace embrix
