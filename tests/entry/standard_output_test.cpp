#include "entry/standard_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

#include "base/descriptor.h"

namespace embrix {
namespace {

class StandardOutputTest : public testing::Test {
 protected:
  StandardOutputTest() {
    ::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) == 0) {
      reader = Descriptor(ends[0]);
      writer = Descriptor(ends[1]);
    }
  }

  std::string readAll() {
    std::string text;
    std::array<char, 4096> piece{};
    ssize_t size = 0;
    while ((size = ::read(reader.number(), piece.data(), piece.size())) > 0) {
      text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return text;
  }

  void fill() {
    ::fcntl(writer.number(), F_SETFL, O_NONBLOCK);
    const std::string much(4096, 'x');
    while (::write(writer.number(), much.data(), much.size()) > 0) {
    }
    ::fcntl(writer.number(), F_SETFL, 0);
  }

  Descriptor reader;
  Descriptor writer;
};

TEST_F(StandardOutputTest, WhateverItsLengthAllOfItArrives) {
  std::string much;
  for (int i = 0; i < 100'000; ++i) much += std::to_string(i) + "\n";
  std::string got;
  std::thread from([&] { got = readAll(); });
  EXPECT_TRUE(writeWhole(writer.number(), much));
  writer.close();
  from.join();
  EXPECT_EQ(got, much);
}

TEST_F(StandardOutputTest, NothingIsWrittenForNothing) {
  EXPECT_TRUE(writeWhole(writer.number(), ""));
  reader.close();
  EXPECT_TRUE(writeWhole(writer.number(), ""));
}

TEST_F(StandardOutputTest, AReaderWhoHasGoneIsTold) {
  reader.close();
  EXPECT_FALSE(writeWhole(writer.number(), "text"));
}

TEST_F(StandardOutputTest, AReaderWhoGoesWhileItIsWaitedForIsTold) {
  fill();
  std::thread to([&] { reader.close(); });
  EXPECT_FALSE(writeWhole(writer.number(), std::string(100'000, 'y')));
  to.join();
}

TEST_F(StandardOutputTest, AStoppedReaderDoesNotKeepAProgramThatIsToldToEnd) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, signal);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    fill();
    ::kill(::getpid(), signal);
    EXPECT_FALSE(writeWhole(writer.number(), "text")) << signal;
    int taken = 0;
    ::sigwait(&blocked, &taken);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
}

TEST_F(StandardOutputTest, ASignalDoesNotCutShortWhatIsRead) {
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  ::kill(::getpid(), SIGTERM);
  EXPECT_TRUE(writeWhole(writer.number(), "text"));
  int taken = 0;
  ::sigwait(&blocked, &taken);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(StandardOutputTest, WhatCannotBeWrittenIsTold) {
  EXPECT_FALSE(writeWhole(-1, "text"));
  const Descriptor closedToWriting(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  EXPECT_FALSE(writeWhole(closedToWriting.number(), "text"));
  const Descriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  if (full.isOpen()) {
    EXPECT_FALSE(writeWhole(full.number(), "text"));
  }
}

}  // namespace
}  // namespace embrix
