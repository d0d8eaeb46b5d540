#include "hosts/linux/logind_inhibitors.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "captured_tree.h"
#include "private_bus.h"

namespace embrix {
namespace {

using Inhibitors = std::vector<LogindInhibitor>;

const Inhibitors kTwo = {
    {"sleep:idle", "Player", "Playing a film", "block", 1000, 4242},
    {"sleep", "NetworkManager", "NetworkManager needs to turn off networks", "delay", 0, 600},
};

class LogindInhibitorsTest : public testing::Test {
 protected:
  // Waits long enough for a busy machine where an answer comes.
  LogindInhibitors client(const std::string& address, double timeoutSeconds = 20) {
    return LogindInhibitors(
        {.address = address, .timeoutSeconds = timeoutSeconds, .retrySeconds = 60},
        [this] { return uptime; });
  }

  double uptime = 1000;
};

TEST_F(LogindInhibitorsTest, TheServicesListArrivesWhole) {
  PrivateBus bus;
  FakeLoginService service(bus.address(), kTwo);
  auto inhibitors = client(bus.address());
  EXPECT_EQ(inhibitors.list(), kTwo);
  EXPECT_EQ(inhibitors.list(), kTwo);
  EXPECT_EQ(service.calls(), 2);
}

TEST_F(LogindInhibitorsTest, AnEmptyListIsAList) {
  PrivateBus bus;
  FakeLoginService service(bus.address(), {});
  EXPECT_EQ(client(bus.address()).list(), Inhibitors{});
}

TEST_F(LogindInhibitorsTest, ABusWithoutTheServiceHasNoList) {
  PrivateBus bus;
  EXPECT_EQ(client(bus.address()).list(), std::nullopt);
}

TEST_F(LogindInhibitorsTest, ARefusalOrAStrangeAnswerIsNoList) {
  for (const auto manner :
       {FakeLoginService::Manner::refuses, FakeLoginService::Manner::answersWithSomethingElse}) {
    PrivateBus bus;
    FakeLoginService service(bus.address(), kTwo, manner);
    EXPECT_EQ(client(bus.address()).list(), std::nullopt);
    EXPECT_EQ(service.calls(), 1);
  }
}

TEST_F(LogindInhibitorsTest, AServiceThatNeverAnswersIsGivenUp) {
  PrivateBus bus;
  FakeLoginService service(bus.address(), kTwo, FakeLoginService::Manner::neverAnswers);
  EXPECT_EQ(client(bus.address(), 0.05).list(), std::nullopt);
}

TEST_F(LogindInhibitorsTest, AfterAFailureThereIsNoTryForAWhile) {
  PrivateBus bus;
  auto inhibitors = client(bus.address());
  EXPECT_EQ(inhibitors.list(), std::nullopt);
  FakeLoginService service(bus.address(), kTwo);
  uptime += 59;
  EXPECT_EQ(inhibitors.list(), std::nullopt);
  EXPECT_EQ(service.calls(), 0);
  uptime += 1;
  EXPECT_EQ(inhibitors.list(), kTwo);
}

TEST_F(LogindInhibitorsTest, ABusThatGoesAwayAndComesBackIsFoundAgain) {
  PrivateBus bus;
  auto inhibitors = client(bus.address());
  {
    FakeLoginService service(bus.address(), kTwo);
    ASSERT_EQ(inhibitors.list(), kTwo);
    bus.stop();
  }
  EXPECT_EQ(inhibitors.list(), std::nullopt);
  bus.start();
  FakeLoginService service(bus.address(), {});
  uptime += 60;
  EXPECT_EQ(inhibitors.list(), Inhibitors{});
}

TEST_F(LogindInhibitorsTest, WithoutABusThereIsNoListAtOnce) {
  CapturedTree tree;
  for (const std::string& address :
       {"unix:path=" + tree.root() + "/missing", std::string("nonsense"), std::string("unix:"),
        std::string("unix:path=/dev/null")}) {
    EXPECT_EQ(client(address).list(), std::nullopt) << address;
  }
}

TEST_F(LogindInhibitorsTest, ASocketThatNeverGreetsIsGivenUp) {
  CapturedTree tree;
  const std::string path = tree.root() + "/silent";
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 4), 0);
  EXPECT_EQ(client("unix:path=" + path, 0.05).list(), std::nullopt);
  ::close(listener);
}

}  // namespace
}  // namespace embrix
