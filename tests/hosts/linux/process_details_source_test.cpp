#include "hosts/linux/process_details_source.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

using namespace std::string_literals;

class LinuxProcessDetailsTest : public testing::Test {
 protected:
  void put(int pid, unsigned startTicks = 100) {
    tree.write(
        fmt::format("{}/stat", pid),
        fmt::format("{} (x) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 {} 0 1\n", pid, startTicks));
  }
  void hold(int pid, int descriptor, const std::string& target) {
    tree.link(fmt::format("{}/fd/{}", pid, descriptor), target);
  }
  LinuxProcessDetailsSource source() {
    return LinuxProcessDetailsSource(
        tree.root(), [this] { return listeners; }, [this](std::int32_t) { return ranNS; });
  }

  CapturedTree tree;
  std::optional<std::vector<ListeningSocket>> listeners = std::vector<ListeningSocket>();
  std::optional<std::uint64_t> ranNS;  // of every process; absent: nobody can tell
};

TEST_F(LinuxProcessDetailsTest, ArgumentsAreCutAtNULs) {
  struct Case {
    const char* label;
    std::string block;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {"ordinary", "node\0server.js\0--port\0"s, {"node", "server.js", "--port"}},
      {"an empty one in between", "a\0\0b\0"s, {"a", "", "b"}},
      {"a title without an end", "next-server (v15.1.0)", {"next-server (v15.1.0)"}},
      {"a title and what it left of the old block", "title\0\0\0\0\0"s, {"title"}},
      {"nothing, as of a kernel thread", "", {}},
      {"only NULs", "\0\0\0"s, {}},
      {"bytes that are no UTF-8", "\xff\0\xfe\0"s, {"\xff", "\xfe"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.write("42/cmdline", c.block);
    EXPECT_EQ(source().arguments(42), c.expected);
  }
  EXPECT_TRUE(source().arguments(43).empty());
}

TEST_F(LinuxProcessDetailsTest, ArgumentsOfTwoMegabytesComeWhole) {
  const std::string big(2 * 1024 * 1024, 'x');
  tree.write("42/cmdline", "java\0"s + big + "\0"s);
  const auto arguments = source().arguments(42);
  ASSERT_EQ(arguments.size(), 2u);
  EXPECT_EQ(arguments.at(1), big);
}

TEST_F(LinuxProcessDetailsTest, DirectoryIsTheLinksTarget) {
  tree.link("42/cwd", "/home/me/my app");
  EXPECT_EQ(source().directory(42), "/home/me/my app");
  EXPECT_FALSE(source().directory(43));
}

TEST_F(LinuxProcessDetailsTest, ADirectoryThatWasRemovedIsCalledAsItWas) {
  tree.link("42/cwd", "/home/ada/code/shop (deleted)");
  EXPECT_EQ(source().directory(42), "/home/ada/code/shop");
}

TEST_F(LinuxProcessDetailsTest, PortsAreThoseOfTheListenersThatAProcessHolds) {
  put(42);
  hold(42, 0, "/dev/null");
  hold(42, 3, "socket:[700]");
  hold(42, 4, "socket:[701]");
  hold(42, 5, "socket:[999]");
  hold(42, 6, "anon_inode:[eventpoll]");
  listeners = std::vector<ListeningSocket>{{701, 9229, false}, {700, 3000, true}, {702, 22, true}};
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42), (std::vector<ListeningPort>{{3000, true}, {9229, false}}));
  EXPECT_TRUE(details.listening(43).empty());
}

TEST_F(LinuxProcessDetailsTest, ListenerOnDescriptorZeroCounts) {
  put(42);
  hold(42, 0, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 79, true}};
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42), (std::vector<ListeningPort>{{79, true}}));
}

TEST_F(LinuxProcessDetailsTest, NewListenerOfAKnownProcessIsFoundInTheNextScan) {
  put(42);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u);
  hold(42, 4, "socket:[701]");
  listeners->push_back({701, 3001, false});
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 2u);
}

TEST_F(LinuxProcessDetailsTest, ClosedListenerIsGoneInTheNextScan) {
  put(42);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u);
  listeners->clear();
  details.beginScan();
  EXPECT_TRUE(details.listening(42).empty());
}

TEST_F(LinuxProcessDetailsTest, DescriptorsAreNotWalkedAgainWhileNoListenerIsNew) {
  put(42);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u);
  tree.remove("42/fd/3");
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u) << "the walk of the scan before still holds";
  for (int scan = 0; scan < 10; ++scan) {
    details.beginScan();
    details.listening(42);
  }
  EXPECT_TRUE(details.listening(42).empty()) << "no walk holds for ever";
}

TEST_F(LinuxProcessDetailsTest, WhatHasNotRunIsNotWalkedForANewListener) {
  put(42);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  ranNS = 5'000'000;
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u);
  hold(42, 4, "socket:[701]");
  listeners->push_back({701, 3001, false});
  for (int scan = 0; scan < 20; ++scan) {
    details.beginScan();
    EXPECT_EQ(details.listening(42).size(), 1u) << "nobody looked at its descriptors";
  }
  ranNS = 5'000'001;
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 2u);
}

TEST_F(LinuxProcessDetailsTest, WhatHasRunIsWalkedOnceForANewListener) {
  put(42);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  ranNS = 1;
  auto details = source();
  details.beginScan();
  details.listening(42);
  ranNS = 2;
  details.beginScan();
  hold(42, 4, "socket:[701]");
  EXPECT_EQ(details.listening(42).size(), 1u) << "nothing new listens";
  listeners->push_back({701, 3001, false});
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 2u);
}

TEST_F(LinuxProcessDetailsTest, ASocketThatAnotherMakesListenIsOfBoth) {
  put(42);
  hold(42, 3, "socket:[700]");
  hold(42, 4, "socket:[701]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  ranNS = 5'000'000;
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u);
  listeners->push_back({701, 3001, false});
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 2u);
}

TEST_F(LinuxProcessDetailsTest, WorkerThatInheritsAListenerIsWalkedWhenItIsNew) {
  put(42);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  auto details = source();
  details.beginScan();
  details.listening(42);
  put(43);
  hold(43, 3, "socket:[700]");
  details.beginScan();
  EXPECT_EQ(details.listening(43), (std::vector<ListeningPort>{{3000, false}}));
}

TEST_F(LinuxProcessDetailsTest, PidThatIsGivenAgainInheritsNoPorts) {
  put(42, 100);
  hold(42, 3, "socket:[700]");
  listeners = std::vector<ListeningSocket>{{700, 3000, false}};
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42).size(), 1u);
  put(42, 5000);
  tree.remove("42/fd/3");
  details.beginScan();
  EXPECT_TRUE(details.listening(42).empty());
}

TEST_F(LinuxProcessDetailsTest, TablesServeWhereDiagnosisIsRefused) {
  put(42);
  hold(42, 3, "socket:[4242]");
  tree.write("net/tcp",
             "  sl  local_address\n   0: 00000000:0BB8 00000000:0000 0A 00000000:00000000 "
             "00:00000000 00000000 1000 0 4242 1\n");
  listeners.reset();
  auto details = source();
  details.beginScan();
  EXPECT_EQ(details.listening(42), (std::vector<ListeningPort>{{3000, true}}));
}

TEST_F(LinuxProcessDetailsTest, LiveProcessKnowsAListenerThatItHasJustOpened) {
  LinuxProcessDetailsSource live;
  const auto portsNow = [&] {
    live.beginScan();
    return live.listening(getpid());
  };
  const auto before = portsNow();
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  ASSERT_EQ(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
  const auto now = portsNow();
  ::close(listener);
  EXPECT_EQ(now.size(), before.size() + 1);
  EXPECT_EQ(std::count(now.begin(), now.end(), ListeningPort{ntohs(address.sin_port), false}), 1);
  EXPECT_EQ(portsNow(), before);
}

TEST_F(LinuxProcessDetailsTest, LiveProcessKnowsItsArgumentsAndDirectory) {
  LinuxProcessDetailsSource live;
  EXPECT_FALSE(live.arguments(getpid()).empty());
  char* directory = getcwd(nullptr, 0);
  EXPECT_EQ(live.directory(getpid()), std::string(directory));
  free(directory);
}

}  // namespace
}  // namespace embrix
