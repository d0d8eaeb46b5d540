#include "hosts/posix/command_runner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "captured_tree.h"

namespace embrix {
namespace {

class PosixCommandRunnerTest : public testing::Test {
 protected:
  std::optional<std::string> shell(const std::string& script) {
    return runner.output("/bin/sh", {"-c", script});
  }

  PosixCommandRunner runner{SpawnManner::native()};
};

TEST_F(PosixCommandRunnerTest, OutputIsWhatWasWrittenToStandardOutput) {
  EXPECT_EQ(runner.output("/bin/echo", {"one", "two words", ""}), "one two words \n");
  EXPECT_EQ(shell("echo out; echo err >&2; exit 3"), "out\n");
  EXPECT_EQ(shell(":"), "");
  EXPECT_EQ(shell("printf 'a\\0\\377b'"), std::string("a\0\xff"
                                                      "b",
                                                      4));
}

TEST_F(PosixCommandRunnerTest, LongOutputIsReadToItsEnd) {
  const auto text = shell("head -c 3000000 /dev/zero");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->size(), 3'000'000u);
}

TEST_F(PosixCommandRunnerTest, WhatCannotBeStartedIsAbsent) {
  CapturedTree tree;
  tree.write("text", "no program");
  for (const std::string& program : {std::string("/nowhere/program"), std::string(""),
                                     std::string("echo"), tree.root(), tree.root() + "/text"}) {
    EXPECT_EQ(runner.output(program, {}), std::nullopt) << program;
    EXPECT_FALSE(runner.start(program, {})) << program;
  }
}

TEST_F(PosixCommandRunnerTest, AProgramThatDiesStillHasItsOutput) {
  EXPECT_EQ(shell("echo last words; kill -9 $$"), "last words\n");
}

TEST_F(PosixCommandRunnerTest, AListOfProcessesIsNotCutToTheWidthOfATerminal) {
  const std::string inherited = std::getenv("COLUMNS") == nullptr ? "" : std::getenv("COLUMNS");
  ::setenv("COLUMNS", "20", 1);
  const std::string marker(300, 'x');
  // The shell stays the one that is listed only while another command follows.
  const auto lines = shell("ps -axo args=; : " + marker);
  if (inherited.empty()) {
    ::unsetenv("COLUMNS");
  } else {
    ::setenv("COLUMNS", inherited.c_str(), 1);
  }
  ASSERT_TRUE(lines);
  EXPECT_NE(lines->find(marker), std::string::npos);
}

TEST_F(PosixCommandRunnerTest, StandardInputIsEmpty) {
  EXPECT_EQ(runner.output("/bin/cat", {}), "");
}

TEST_F(PosixCommandRunnerTest, NoOpenFileIsHandedOn) {
  const int descriptor = ::open("/dev/null", O_RDONLY);
  ASSERT_GE(descriptor, 0);
  // The listing itself holds one more, on the folder it lists.
  EXPECT_EQ(shell("ls /proc/self/fd | wc -l"), "4\n");
  ::close(descriptor);
}

TEST_F(PosixCommandRunnerTest, SignalsAreAsAProgramExpectsThem) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto status = shell("grep SigBlk /proc/self/status");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(status, "SigBlk:\t0000000000000000\n");

  // Those that this program ignores.
  const auto pipe = std::signal(SIGPIPE, SIG_IGN);
  const auto fileSize = std::signal(SIGXFSZ, SIG_IGN);
  const auto ignored = shell("sed -n 's/SigIgn:[[:space:]]*//p' /proc/self/status");
  std::signal(SIGPIPE, pipe);
  std::signal(SIGXFSZ, fileSize);
  ASSERT_TRUE(ignored);
  // Two more, 32 and 33, are the C library's own, whose ways with them are as it was started.
  constexpr unsigned long long kStandard = 0x7fffffff;
  EXPECT_EQ(std::stoull(*ignored, nullptr, 16) & kStandard, 0u) << *ignored;
}

TEST_F(PosixCommandRunnerTest, NoZombieIsLeftBehind) {
  ASSERT_TRUE(shell(":"));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(PosixCommandRunnerTest, CallsMayOverlap) {
  std::string first;
  std::thread other([&] {
    first = PosixCommandRunner(SpawnManner::native()).output("/bin/echo", {"1"}).value_or("");
  });
  const auto second = runner.output("/bin/echo", {"2"});
  other.join();
  EXPECT_EQ(first, "1\n");
  EXPECT_EQ(second, "2\n");
}

TEST_F(PosixCommandRunnerTest, AStartedProgramRunsInItsOwnSessionAndIsWaitedFor) {
  CapturedTree tree;
  const std::string pipe = tree.root() + "/pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  ASSERT_TRUE(runner.start("/bin/sh", {"-c", "echo $$ $(cut -d' ' -f6 /proc/$$/stat) > " + pipe}));
  std::ifstream reader(pipe);  // waits for the writer
  pid_t pid = 0;
  pid_t session = 0;
  reader >> pid >> session;
  EXPECT_GT(pid, 0);
  EXPECT_EQ(session, pid);
  EXPECT_NE(session, ::getsid(0));
  // It ends at once and somebody takes note of it: its pid goes away instead of staying a zombie.
  while (::kill(pid, 0) == 0) std::this_thread::yield();
  EXPECT_EQ(errno, ESRCH);
}

}  // namespace
}  // namespace embrix
