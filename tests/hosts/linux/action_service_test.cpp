#include "hosts/linux/action_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bus_program.h"
#include "hosts/linux/control_center.h"
#include "private_bus.h"
#include "silent_socket.h"
#include "turned_loop.h"

namespace embrix {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kName = "app.embrix.Embrix";
constexpr const char* kPath = "/app/embrix/Embrix";
constexpr const char* kInterface = "app.embrix.Shortcuts";

class BusActionServiceTest : public testing::Test {
 protected:
  PublishedAction action(const std::string& name, PublishedAction::Value value,
                         ActionOutcome outcome) {
    return {.name = name,
            .title = name,
            .value = value,
            .perform = [this, name, outcome](const ActionReply& reply) {
              performed.push_back(name);
              reply(outcome);
            }};
  }

  void publishAll() {
    service.publish(
        {action("GetHottestApp", PublishedAction::Value::text,
                ActionResult{std::string("node · 5.0 W"), "node · 5.0 W"}),
         action("GetSystemPower", PublishedAction::Value::number,
                ActionResult{14.2, "Your Mac is drawing 14.2 W."}),
         action("CalmHottestApp", PublishedAction::Value::none, ActionResult{{}, "Calmed node."}),
         action("StopHottestApp", PublishedAction::Value::none,
                ActionError{"Embrix is still measuring. Try again in a moment."})});
    EXPECT_TRUE(untilNamed());
  }

  bool untilNamed() {
    return turnUntil(loop, [&] {
      bool isThere = false;
      caller.run([&](sd_bus* from) {
        isThere = sd_bus_call_method(from, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                     "org.freedesktop.DBus", "GetNameOwner", nullptr, nullptr, "s",
                                     kName) >= 0;
      });
      return isThere;
    });
  }

  // What another program gets that calls the method, as text.
  std::string call(const char* method, const char* interface = kInterface, const char* types = "",
                   const char* argument = nullptr) {
    std::string told;
    std::atomic<bool> isOver = false;
    std::thread from([&] {
      caller.run([&](sd_bus* calling) {
        sd_bus_error error{};
        sd_bus_message* reply = nullptr;
        const int result =
            argument == nullptr
                ? sd_bus_call_method(calling, kName, kPath, interface, method, &error, &reply, "")
                : sd_bus_call_method(calling, kName, kPath, interface, method, &error, &reply,
                                     types, argument);
        if (result < 0) {
          told = std::string("error ") + error.name + ": " + error.message;
        } else {
          told = read(reply);
        }
        sd_bus_error_free(&error);
        sd_bus_message_unref(reply);
      });
      isOver = true;
    });
    EXPECT_TRUE(turnUntil(loop, [&] { return isOver.load(); }));
    from.join();
    return told;
  }

  static std::string read(sd_bus_message* reply) {
    const std::string types = sd_bus_message_get_signature(reply, 1);
    std::string told = types + ":";
    for (const char type : types) {
      if (type == 'd') {
        double number = 0;
        sd_bus_message_read(reply, "d", &number);
        told += " " + std::to_string(number);
      } else {
        const char* text = nullptr;
        sd_bus_message_read(reply, "s", &text);
        told += std::string(" ") + text;
      }
    }
    return told;
  }

  PrivateBus bus;
  LinuxEventLoop loop;
  std::shared_ptr<BusConnection> connection = std::make_shared<BusConnection>(loop, bus.address());
  BusActionService service{connection};
  BusProgram caller{bus.address(), "", "/caller"};
  std::vector<std::string> performed;
};

TEST_F(BusActionServiceTest, EachActionIsAMethodWithItsValueAndItsSentence) {
  publishAll();
  EXPECT_EQ(call("GetHottestApp"), "ss: node · 5.0 W node · 5.0 W");
  EXPECT_EQ(call("GetSystemPower"), "ds: 14.200000 Your Mac is drawing 14.2 W.");
  EXPECT_EQ(call("CalmHottestApp"), "s: Calmed node.");
  EXPECT_THAT(performed, testing::ElementsAre("GetHottestApp", "GetSystemPower", "CalmHottestApp"));
}

TEST_F(BusActionServiceTest, AnErrorComesWithItsText) {
  publishAll();
  EXPECT_EQ(call("StopHottestApp"),
            "error app.embrix.Error.Failed: Embrix is still measuring. Try again in a moment.");
}

TEST_F(BusActionServiceTest, AnErrorTextIsNoFormat) {
  service.publish({action("Fail", PublishedAction::Value::none, ActionError{"100 %s of %n\xff"})});
  ASSERT_TRUE(untilNamed());
  EXPECT_THAT(call("Fail"), StartsWith("error app.embrix.Error.Failed: 100 %s of %n"));
}

TEST_F(BusActionServiceTest, TheObjectTellsWhatItOffers) {
  publishAll();
  const std::string xml = call("Introspect", "org.freedesktop.DBus.Introspectable");
  EXPECT_THAT(xml, HasSubstr("<interface name=\"app.embrix.Shortcuts\">"));
  for (const char* name : {"GetHottestApp", "GetSystemPower", "CalmHottestApp", "StopHottestApp"}) {
    EXPECT_THAT(xml, HasSubstr(std::string("<method name=\"") + name + "\">"));
  }
  EXPECT_THAT(xml, HasSubstr("<arg type=\"d\" name=\"value\" direction=\"out\"/>"));
  EXPECT_THAT(xml, HasSubstr("<arg type=\"s\" name=\"dialog\" direction=\"out\"/>"));
}

TEST_F(BusActionServiceTest, WhatIsNotOfferedIsRefused) {
  publishAll();
  EXPECT_THAT(call("OpenPodBayDoors"),
              StartsWith("error org.freedesktop.DBus.Error.UnknownMethod"));
  EXPECT_THAT(call("GetHottestApp", "app.embrix.Other"),
              StartsWith("error org.freedesktop.DBus.Error.Unknown"));
  EXPECT_THAT(call("StopHottestApp", kInterface, "s", "all of them"),
              StartsWith("error org.freedesktop.DBus.Error.InvalidArgs"));
  EXPECT_TRUE(performed.empty());
}

TEST_F(BusActionServiceTest, AnAnswerCanComeLaterAndInAnyOrder) {
  std::vector<ActionReply> replies;
  service.publish({{.name = "Wait", .title = "", .perform = [&](ActionReply reply) {
                      replies.push_back(std::move(reply));
                    }}});
  ASSERT_TRUE(untilNamed());
  BusProgram other(bus.address(), "", "/other");
  std::string first;
  std::string second;
  const auto ask = [](BusProgram& program, std::string& told) {
    program.run([&told](sd_bus* from) {
      sd_bus_call_method_async(
          from, nullptr, kName, kPath, kInterface, "Wait",
          [](sd_bus_message* reply, void* data, sd_bus_error*) {
            *static_cast<std::string*>(data) = read(reply);
            return 0;
          },
          &told, "");
    });
  };
  ask(caller, first);
  ASSERT_TRUE(turnUntil(loop, [&] { return replies.size() == 1; }));
  ask(other, second);
  ASSERT_TRUE(turnUntil(loop, [&] { return replies.size() == 2; }));
  const auto heard = [&](BusProgram& program, std::string& told) {
    bool isHeard = false;
    program.run([&](sd_bus*) { isHeard = !told.empty(); });
    return isHeard;
  };
  replies[1](ActionResult{{}, "two"});
  EXPECT_TRUE(turnUntil(loop, [&] { return heard(other, second); }));
  EXPECT_FALSE(heard(caller, first));
  replies[0](ActionResult{{}, "one"});
  replies[0](ActionResult{{}, "one again"});
  EXPECT_TRUE(turnUntil(loop, [&] { return heard(caller, first); }));
  EXPECT_EQ(first, "s: one");
  EXPECT_EQ(second, "s: two");
}

TEST_F(BusActionServiceTest, WhoIsNeverAnsweredIsToldSo) {
  service.publish({{.name = "Forget", .title = "", .perform = [](const ActionReply&) {}}});
  ASSERT_TRUE(untilNamed());
  EXPECT_EQ(call("Forget"), "error app.embrix.Error.Failed: The action was given up.");
}

TEST_F(BusActionServiceTest, AValueOfAnotherKindIsAnError) {
  service.publish({action("Text", PublishedAction::Value::text, ActionResult{5.0, "five"}),
                   action("Number", PublishedAction::Value::number, ActionResult{{}, "none"}),
                   action("None", PublishedAction::Value::none, ActionResult{5.0, "five"})});
  ASSERT_TRUE(untilNamed());
  for (const char* name : {"Text", "Number", "None"}) {
    EXPECT_THAT(call(name), StartsWith("error app.embrix.Error.Failed"));
  }
}

TEST_F(BusActionServiceTest, BytesThatAreNoTextAreRepaired) {
  service.publish({action("Get", PublishedAction::Value::text,
                          ActionResult{std::string("a\xff"), std::string("b\xfe")})});
  ASSERT_TRUE(untilNamed());
  EXPECT_EQ(call("Get"), "ss: a\xef\xbf\xbd b\xef\xbf\xbd");
}

TEST_F(BusActionServiceTest, OnlyTheNewestActionsAreOffered) {
  publishAll();
  service.publish({action("Only", PublishedAction::Value::none, ActionResult{{}, "one"})});
  EXPECT_EQ(call("Only"), "s: one");
  EXPECT_THAT(call("GetHottestApp"), StartsWith("error "));
}

TEST_F(BusActionServiceTest, ABusThatGoesAndComesBackHasThemAgain) {
  publishAll();
  bool isDown = false;
  connection->onDown([&] { isDown = true; });
  bus.stop();
  ASSERT_TRUE(turnUntil(loop, [&] { return isDown; }));
  bus.start();
  BusProgram later(bus.address(), "", "/later");
  EXPECT_TRUE(turnUntil(loop, [&] {
    bool isThere = false;
    later.run([&](sd_bus* from) {
      isThere = sd_bus_call_method(from, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus", "GetNameOwner", nullptr, nullptr, "s",
                                   kName) >= 0;
    });
    return isThere;
  }));
}

TEST_F(BusActionServiceTest, ASecondProgramHasTheNameWhenTheFirstOneEnds) {
  publishAll();
  LinuxEventLoop otherLoop;
  auto otherConnection = std::make_shared<BusConnection>(otherLoop, bus.address());
  {
    BusActionService other(otherConnection);
    bool isNamed = false;
    other.publish({action("Other", PublishedAction::Value::none, ActionResult{{}, "other"})});
    otherConnection->onUp([&](sd_bus*) { isNamed = true; });
    EXPECT_TRUE(isNamed);
    EXPECT_EQ(call("CalmHottestApp"), "s: Calmed node.");
  }
}

TEST_F(BusActionServiceTest, WithoutABusNothingHappens) {
  SilentSocket socket;
  for (const std::string& address : {std::string(), socket.address()}) {
    BusActionService other(std::make_shared<BusConnection>(loop, address));
    other.publish({action("Only", PublishedAction::Value::none, ActionResult{{}, "one"})});
    loop.turn();
  }
}

TEST(DesktopControlsTest, AReloadIsASignalOfTheProgramsObject) {
  PrivateBus bus;
  LinuxEventLoop loop;
  DesktopControls controls(std::make_shared<BusConnection>(loop, bus.address()));
  BusProgram panel(bus.address(), "", "/panel");
  std::atomic<int> signals = 0;
  panel.run([&](sd_bus* from) {
    sd_bus_match_signal(
        from, nullptr, nullptr, kPath, "app.embrix.Controls", "StateChanged",
        [](sd_bus_message*, void* data, sd_bus_error*) {
          ++*static_cast<std::atomic<int>*>(data);
          return 0;
        },
        &signals);
  });
  controls.reloadAllControls();
  EXPECT_TRUE(turnUntil(loop, [&] { return signals == 1; }));
  controls.reloadAllControls();
  EXPECT_TRUE(turnUntil(loop, [&] { return signals == 2; }));
}

TEST(DesktopControlsTest, WithoutABusNothingHappens) {
  LinuxEventLoop loop;
  DesktopControls controls(std::make_shared<BusConnection>(loop, ""));
  controls.reloadAllControls();
  loop.turn();
}

}  // namespace
}  // namespace embrix
