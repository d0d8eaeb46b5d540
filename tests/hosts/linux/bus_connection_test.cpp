#include "hosts/linux/bus_connection.h"

#include <gtest/gtest.h>

#include <string>

#include "bus_program.h"
#include "captured_tree.h"
#include "hosts/linux/bus_address.h"
#include "hosts/linux/bus_peer.h"
#include "private_bus.h"
#include "silent_socket.h"
#include "turned_loop.h"

namespace embrix {
namespace {

constexpr const char* kPeer = "app.embrix.test.Peer";

TEST(BusConnectionTest, NothingIsDoneBeforeTheBusIsAskedFor) {
  PrivateBus bus;
  LinuxEventLoop loop;
  BusConnection connection(loop, bus.address());
  int ups = 0;
  connection.onUp([&](sd_bus*) { ++ups; });
  loop.turn();
  EXPECT_EQ(ups, 0);
  EXPECT_NE(connection.bus(), nullptr);
  EXPECT_EQ(ups, 1);
  EXPECT_NE(connection.bus(), nullptr);
  EXPECT_EQ(ups, 1);
}

TEST(BusConnectionTest, WhoComesLateIsToldOfTheConnectionThatThereIs) {
  PrivateBus bus;
  LinuxEventLoop loop;
  BusConnection connection(loop, bus.address());
  sd_bus* const first = connection.bus();
  sd_bus* told = nullptr;
  connection.onUp([&](sd_bus* up) { told = up; });
  EXPECT_EQ(told, first);
}

TEST(BusConnectionTest, WithoutABusThereIsNoneAtOnce) {
  CapturedTree tree;
  LinuxEventLoop loop;
  for (const std::string& address :
       {std::string(), "unix:path=" + tree.root() + "/missing", std::string("nonsense"),
        std::string("unix:"), std::string("unix:path=/dev/null"), std::string("autolaunch:")}) {
    BusConnection connection(loop, address);
    bool isUp = false;
    connection.onUp([&](sd_bus*) { isUp = true; });
    EXPECT_EQ(connection.bus(), nullptr) << address;
    EXPECT_FALSE(isUp) << address;
  }
}

TEST(BusConnectionTest, ABusThatGoesAndComesBackIsFoundAgain) {
  PrivateBus bus;
  LinuxEventLoop loop;
  BusConnection connection(loop, bus.address());
  int ups = 0;
  int downs = 0;
  connection.onUp([&](sd_bus*) { ++ups; });
  connection.onDown([&] { ++downs; });
  bool answered = false;
  const BusMessage call = newBusCall(connection.bus(), "org.freedesktop.DBus",
                                     "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId");
  const BusSlot slot =
      sendBusCall(connection.bus(), call.get(), 20, [&](sd_bus_message*) { answered = true; });
  ASSERT_TRUE(turnUntil(loop, [&] { return answered; }));
  bus.stop();
  ASSERT_TRUE(turnUntil(loop, [&] { return downs == 1; }));
  EXPECT_EQ(connection.bus(), nullptr);
  bus.start();
  EXPECT_TRUE(turnUntil(loop, [&] { return ups == 2; }));
  EXPECT_NE(connection.bus(), nullptr);
  EXPECT_EQ(downs, 1);
}

TEST(BusConnectionTest, ACallThatIsUnderWayWhenTheBusGoesEndsWithAnError) {
  PrivateBus bus;
  BusProgram peer(bus.address(), kPeer, "/", {{"Wait", [](sd_bus_message*) { return 1; }}});
  LinuxEventLoop loop;
  BusConnection connection(loop, bus.address());
  int errors = 0;
  const BusMessage call = newBusCall(connection.bus(), kPeer, "/", "app.embrix.test", "Wait");
  const BusSlot slot = sendBusCall(connection.bus(), call.get(), 1000, [&](sd_bus_message* answer) {
    errors += sd_bus_message_is_method_error(answer, nullptr) > 0 ? 1 : 0;
  });
  ASSERT_TRUE(turnUntil(loop, [&] { return peer.calls("Wait") == 1; }));
  bus.stop();
  EXPECT_TRUE(turnUntil(loop, [&] { return errors == 1; }));
}

TEST(BusConnectionTest, AnAnswerThatNeverComesIsATimeOut) {
  PrivateBus bus;
  BusProgram peer(bus.address(), kPeer, "/", {{"Wait", [](sd_bus_message*) { return 1; }}});
  LinuxEventLoop loop;
  BusConnection connection(loop, bus.address());
  std::string error;
  const BusMessage call = newBusCall(connection.bus(), kPeer, "/", "app.embrix.test", "Wait");
  const BusSlot slot = sendBusCall(connection.bus(), call.get(), 0.05, [&](sd_bus_message* answer) {
    error = sd_bus_message_get_error(answer)->name;
  });
  EXPECT_TRUE(turnUntil(loop, [&] { return !error.empty(); }));
}

TEST(BusConnectionTest, ASocketThatNeverGreetsHoldsNobodyUp) {
  SilentSocket socket;
  LinuxEventLoop loop;
  BusConnection connection(loop, socket.address());
  EXPECT_NE(connection.bus(), nullptr);
  bool isLater = false;
  const Scheduled later = loop.scheduler().after(0.01, [&] { isLater = true; });
  EXPECT_TRUE(turnUntil(loop, [&] { return isLater; }));
}

TEST(BusAddressTest, TheEnvironmentNamesTheBuses) {
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/system", 1);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/session", 1);
  ::setenv("XDG_RUNTIME_DIR", "/run/user/1000 =%", 1);
  EXPECT_EQ(systemBusAddress(), "unix:path=/system");
  EXPECT_EQ(sessionBusAddress(), "unix:path=/session");
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "", 1);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "", 1);
  EXPECT_EQ(systemBusAddress(), "unix:path=/run/dbus/system_bus_socket");
  EXPECT_EQ(sessionBusAddress(), "unix:path=/run/user/1000%20%3d%25/bus");
  ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  ::unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(systemBusAddress(), "unix:path=/run/dbus/system_bus_socket");
  EXPECT_EQ(sessionBusAddress(), "");
}

class BusPeerTest : public testing::Test {
 protected:
  PrivateBus bus;
  LinuxEventLoop loop;
  BusConnection connection{loop, bus.address()};
  int changes = 0;
  BusPeer peer{connection, kPeer, [this](sd_bus*) { ++changes; }};
};

TEST_F(BusPeerTest, WhoeverHasTheNameIsKnown) {
  const BusProgram program(bus.address(), kPeer, "/");
  ASSERT_NE(connection.bus(), nullptr);
  EXPECT_TRUE(turnUntil(loop, [&] { return !peer.owner().empty(); }));
  EXPECT_EQ(changes, 1);
}

TEST_F(BusPeerTest, OneThatComesGoesAndComesAgainIsAnotherEachTime) {
  ASSERT_NE(connection.bus(), nullptr);
  std::string first;
  {
    const BusProgram program(bus.address(), kPeer, "/");
    ASSERT_TRUE(turnUntil(loop, [&] { return !peer.owner().empty(); }));
    first = peer.owner();
  }
  ASSERT_TRUE(turnUntil(loop, [&] { return peer.owner().empty(); }));
  const BusProgram program(bus.address(), kPeer, "/");
  ASSERT_TRUE(turnUntil(loop, [&] { return !peer.owner().empty(); }));
  EXPECT_NE(peer.owner(), first);
  EXPECT_EQ(changes, 3);
}

TEST_F(BusPeerTest, NobodyIsKnownWhenTheBusHasGone) {
  const BusProgram program(bus.address(), kPeer, "/");
  ASSERT_NE(connection.bus(), nullptr);
  ASSERT_TRUE(turnUntil(loop, [&] { return !peer.owner().empty(); }));
  bus.stop();
  EXPECT_TRUE(turnUntil(loop, [&] { return peer.owner().empty(); }));
}

}  // namespace
}  // namespace embrix
