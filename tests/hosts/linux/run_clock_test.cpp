#include "hosts/linux/run_clock.h"

#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <filesystem>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "captured_tree.h"

namespace embrix {
namespace {

std::uint64_t ownRunTime() {
  timespec ran{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ran);
  return static_cast<std::uint64_t>(ran.tv_sec) * 1'000'000'000 +
         static_cast<std::uint64_t>(ran.tv_nsec);
}

TEST(RunClockTest, TellsTheTimeOfAllThreadsOfAProcess) {
  const std::uint64_t before = ownRunTime();
  const auto told = runTimeNS(getpid());
  const std::uint64_t after = ownRunTime();
  ASSERT_TRUE(told);
  EXPECT_GE(*told, before);
  EXPECT_LE(*told, after);
}

TEST(RunClockTest, AProcessThatWasWaitedForHasNone) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_GT(child, 0);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(runTimeNS(child), std::nullopt);
}

TEST(RunClockTest, WhatIsNoPidHasNone) {
  for (const std::int32_t pid : {0, -1, std::numeric_limits<std::int32_t>::min(),
                                 std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(runTimeNS(pid), std::nullopt) << pid;
  }
}

TEST(RunClockTest, PidsOfThisMachineAreItsOwnAndThoseOfATreeAreNot) {
  EXPECT_TRUE(tellsOwnPids("/proc"));
  CapturedTree tree;
  EXPECT_FALSE(tellsOwnPids(tree.root()));
  std::filesystem::create_symlink(std::to_string(getpid() + 1), tree.root() + "/self");
  EXPECT_FALSE(tellsOwnPids(tree.root()));
}

}  // namespace
}  // namespace embrix
