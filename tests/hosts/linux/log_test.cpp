#include "hosts/linux/log.h"

#include <gtest/gtest.h>

#include "fakes/scratch_folder.h"

namespace embrix {
namespace {

TEST(LinuxLogTest, WithoutAJournalTheLineGoesToStandardError) {
  const ScratchFolder folder;
  LinuxLog log(folder / "socket");
  testing::internal::CaptureStderr();
  log.error("PowerModel", "Calm 5 failed: 1");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "app.embrix [PowerModel] Calm 5 failed: 1\n");
}

TEST(LinuxLogTest, WithAJournalNothingIsSaidToTheUser) {
  // The journal's library itself goes to its own socket alone, and drops what nobody takes there.
  const ScratchFolder folder;
  folder.write("socket", "");
  LinuxLog log(folder / "socket");
  testing::internal::CaptureStderr();
  log.error("PowerModel", "Calm 5 failed: 1");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace embrix
