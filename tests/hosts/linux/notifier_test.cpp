#include "hosts/linux/notifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bus_program.h"
#include "captured_tree.h"
#include "hosts/linux/bus_peer.h"
#include "private_bus.h"
#include "silent_socket.h"
#include "turned_loop.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";

// One call of Notify as the service got it.
struct Shown {
  std::string program;
  std::uint32_t replaces = 0;
  std::string title;
  std::string body;
  std::vector<std::string> actions;
  std::map<std::string, std::string> hints;
  std::int32_t timeout = 0;
};

std::optional<Shown> shownIn(sd_bus_message* call) {
  Shown shown;
  const char* program = nullptr;
  const char* icon = nullptr;
  const char* title = nullptr;
  const char* body = nullptr;
  if (sd_bus_message_read(call, "susss", &program, &shown.replaces, &icon, &title, &body) < 0) {
    return std::nullopt;
  }
  shown.program = program;
  shown.title = title;
  shown.body = body;
  const char* word = nullptr;
  sd_bus_message_enter_container(call, 'a', "s");
  while (sd_bus_message_read(call, "s", &word) > 0) shown.actions.emplace_back(word);
  sd_bus_message_exit_container(call);
  sd_bus_message_enter_container(call, 'a', "{sv}");
  const char* key = nullptr;
  const char* value = nullptr;
  while (sd_bus_message_enter_container(call, 'e', "sv") > 0) {
    if (sd_bus_message_read(call, "s", &key) > 0 &&
        sd_bus_message_read(call, "v", "s", &value) > 0) {
      shown.hints[key] = value;
    }
    sd_bus_message_exit_container(call);
  }
  sd_bus_message_exit_container(call);
  if (sd_bus_message_read(call, "i", &shown.timeout) < 0) return std::nullopt;
  return shown;
}

// The desktop's service, with the manners of a good one unless told otherwise.
class NotificationService {
 public:
  struct Manners {
    std::vector<std::string> capabilities = {"body", "actions"};
    BusProgram::Answer getCapabilities = nullptr;  // null: tells them
    BusProgram::Answer notify = nullptr;           // null: takes it
    std::uint32_t firstNumber = 7;
  };

  explicit NotificationService(const std::string& address) : NotificationService(address, {}) {}
  NotificationService(const std::string& address, Manners manners)
      : manners_(std::move(manners)),
        nextNumber_(manners_.firstNumber),
        program_(std::make_unique<BusProgram>(address, kService, kPath, answers())) {}

  std::vector<Shown> shown() {
    const std::lock_guard lock(mutex_);
    return shown_;
  }
  int calls(const std::string& method) { return program_->calls(method); }

  void invoke(std::uint32_t number, const char* action) {
    program_->run([&](sd_bus* bus) {
      sd_bus_emit_signal(bus, kPath, kService, "ActionInvoked", "us", number, action);
    });
  }
  void close(std::uint32_t number, std::uint32_t reason) {
    program_->run([&](sd_bus* bus) {
      sd_bus_emit_signal(bus, kPath, kService, "NotificationClosed", "uu", number, reason);
    });
  }
  void run(std::function<void(sd_bus*)> work) { program_->run(std::move(work)); }

 private:
  BusProgram::Answers answers() {
    return {{"GetCapabilities", manners_.getCapabilities
                                    ? manners_.getCapabilities
                                    : [this](sd_bus_message* call) { return tell(call); }},
            {"Notify", manners_.notify ? manners_.notify
                                       : [this](sd_bus_message* call) { return take(call); }}};
  }

  int tell(sd_bus_message* call) {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(call, &reply);
    sd_bus_message_open_container(reply, 'a', "s");
    for (const std::string& each : manners_.capabilities) {
      sd_bus_message_append(reply, "s", each.c_str());
    }
    sd_bus_message_close_container(reply);
    const int sent = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return sent;
  }

  int take(sd_bus_message* call) {
    const auto shown = shownIn(call);
    if (!shown) return 0;
    const std::lock_guard lock(mutex_);
    shown_.push_back(*shown);
    const std::uint32_t number = shown->replaces != 0 ? shown->replaces : nextNumber_++;
    return sd_bus_reply_method_return(call, "u", number);
  }

  Manners manners_;
  std::mutex mutex_;  // for what follows
  std::vector<Shown> shown_;
  std::uint32_t nextNumber_;
  std::unique_ptr<BusProgram> program_;
};

const NotificationCategory kHotApp = {
    "hot-app",
    {{"calm", "Calm (efficiency cores)"}, {"stop", "Stop", true}, {"snooze", "Snooze 1 hour"}}};

Notification hot(const std::string& group, const std::string& body = "Body") {
  return {.identifier = "hot-" + group,
          .title = group + " is heating your Mac",
          .body = body,
          .group = group,
          .category = "hot-app"};
}

class DesktopNotifierTest : public testing::Test {
 protected:
  explicit DesktopNotifierTest() { install(notifier); }

  void install(DesktopNotifier& to) {
    to.install({kHotApp},
               [this](const NotificationResponse& response) { responses.push_back(response); });
  }

  bool untilShown(NotificationService& service, std::size_t count) {
    return turnUntil(loop, [&] { return service.shown().size() >= count; });
  }

  // Everything that was on its way has arrived when this returns.
  void settle(NotificationService& service, DesktopNotifier& to) {
    const std::size_t before = service.shown().size();
    to.post({.identifier = "settled", .title = "", .body = "", .group = {}, .category = {}});
    ASSERT_TRUE(untilShown(service, before + 1));
    to.post({.identifier = "settled", .title = "", .body = "", .group = {}, .category = {}});
    ASSERT_TRUE(untilShown(service, before + 2));
  }

  PrivateBus bus;
  LinuxEventLoop loop;
  std::shared_ptr<BusConnection> connection = std::make_shared<BusConnection>(loop, bus.address());
  std::vector<NotificationResponse> responses;
  DesktopNotifier notifier{connection};
};

TEST_F(DesktopNotifierTest, ItIsShownWithItsThreeButtonsAndADefaultSound) {
  NotificationService service(bus.address());
  notifier.post(hot("node", "Averaging 5.0 W."));
  ASSERT_TRUE(untilShown(service, 1));
  const Shown shown = service.shown().front();
  EXPECT_EQ(shown.program, "Embrix");
  EXPECT_EQ(shown.replaces, 0U);
  EXPECT_EQ(shown.title, "node is heating your Mac");
  EXPECT_EQ(shown.body, "Averaging 5.0 W.");
  EXPECT_THAT(shown.actions,
              ElementsAre("default", "Open Embrix", "calm", "Calm (efficiency cores)", "stop",
                          "Stop", "snooze", "Snooze 1 hour"));
  EXPECT_THAT(shown.hints, ElementsAre(Pair("desktop-entry", "app.embrix.Embrix"),
                                       Pair("sound-name", "message-new-instant")));
  EXPECT_EQ(shown.timeout, -1);
}

TEST_F(DesktopNotifierTest, WithoutACategoryThereAreNoButtonsButItCanBeClicked) {
  NotificationService service(bus.address());
  Notification plain = hot("node");
  plain.category.reset();
  notifier.post(plain);
  plain.identifier = "other";
  plain.category = "unheard-of";
  notifier.post(plain);
  ASSERT_TRUE(untilShown(service, 2));
  for (const Shown& shown : service.shown()) {
    EXPECT_THAT(shown.actions, ElementsAre("default", "Open Embrix"));
  }
}

TEST_F(DesktopNotifierTest, AServiceWithoutActionsIsSentNone) {
  NotificationService service(bus.address(), {.capabilities = {"body"}});
  notifier.post(hot("node"));
  ASSERT_TRUE(untilShown(service, 1));
  EXPECT_THAT(service.shown().front().actions, IsEmpty());
}

TEST_F(DesktopNotifierTest, MarkupIsEscapedWhereTheServiceReadsIt) {
  const std::string body = "<b>a & b</b>";
  struct Case {
    std::vector<std::string> capabilities;
    std::string expected;
  };
  const Case cases[] = {{{"body", "body-markup"}, "&lt;b&gt;a &amp; b&lt;/b&gt;"},
                        {{"body"}, body}};
  for (const Case& c : cases) {
    PrivateBus own;
    NotificationService service(own.address(), {.capabilities = c.capabilities});
    DesktopNotifier other(std::make_shared<BusConnection>(loop, own.address()));
    other.post(hot("<i>", body));
    ASSERT_TRUE(untilShown(service, 1));
    EXPECT_EQ(service.shown().front().body, c.expected);
    EXPECT_EQ(service.shown().front().title, "<i> is heating your Mac");
  }
}

TEST_F(DesktopNotifierTest, OneOfTheSameNameReplacesTheOneBefore) {
  NotificationService service(bus.address());
  notifier.post(hot("node", "first"));
  notifier.post(hot("node", "second"));
  notifier.post(hot("Mail", "third"));
  ASSERT_TRUE(untilShown(service, 3));
  const auto shown = service.shown();
  EXPECT_EQ(shown[0].replaces, 0U);
  EXPECT_EQ(shown[1].replaces, 7U);
  EXPECT_EQ(shown[2].replaces, 0U);
  EXPECT_EQ(service.calls("GetCapabilities"), 1);
}

TEST_F(DesktopNotifierTest, TheUsersAnswerComesWithItsGroup) {
  NotificationService service(bus.address());
  notifier.post(hot("node"));
  notifier.post(hot("Mail"));
  settle(service, notifier);
  service.invoke(8, "stop");
  service.invoke(7, "default");
  ASSERT_TRUE(turnUntil(loop, [&] { return responses.size() == 2; }));
  EXPECT_EQ(responses[0], (NotificationResponse{"stop", "Mail"}));
  EXPECT_EQ(responses[1], (NotificationResponse{kDefaultAction, "node"}));
}

TEST_F(DesktopNotifierTest, NotificationsOfOtherProgramsAreNotAnswered) {
  NotificationService service(bus.address());
  notifier.post(hot("node"));
  settle(service, notifier);
  service.invoke(3, "stop");
  service.invoke(7, "calm");
  ASSERT_TRUE(turnUntil(loop, [&] { return !responses.empty(); }));
  EXPECT_THAT(responses, ElementsAre(NotificationResponse{"calm", "node"}));
}

TEST_F(DesktopNotifierTest, ADismissedOneIsForgottenAndAnExpiredOneCanStillBeAnswered) {
  NotificationService service(bus.address());
  notifier.post(hot("node"));
  notifier.post(hot("Mail"));
  settle(service, notifier);
  service.close(7, 2);
  service.close(8, 1);
  service.invoke(7, "stop");
  service.invoke(8, "calm");
  ASSERT_TRUE(turnUntil(loop, [&] { return !responses.empty(); }));
  EXPECT_THAT(responses, ElementsAre(NotificationResponse{"calm", "Mail"}));
}

TEST_F(DesktopNotifierTest, AnswersOfAnybodyElseCountForNothing) {
  NotificationService service(bus.address());
  notifier.post(hot("node"));
  settle(service, notifier);
  const char* self = nullptr;
  ASSERT_GE(sd_bus_get_unique_name(connection->bus(), &self), 0);
  const std::string us = self;
  BusProgram stranger(bus.address(), "", "/stranger");
  stranger.run([&](sd_bus* from) {
    // Sent to this program alone, a signal passes every rule of the bus.
    sd_bus_message* signal = nullptr;
    sd_bus_message_new_signal(from, &signal, kPath, kService, "ActionInvoked");
    sd_bus_message_append(signal, "us", 7U, "stop");
    sd_bus_send_to(from, signal, us.c_str(), nullptr);
    sd_bus_message_unref(signal);
    sd_bus_flush(from);
    sd_bus_call_method(from, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                       "org.freedesktop.DBus", "GetId", nullptr, nullptr, "");
  });
  service.invoke(7, "calm");
  ASSERT_TRUE(turnUntil(loop, [&] { return !responses.empty(); }));
  EXPECT_THAT(responses, ElementsAre(NotificationResponse{"calm", "node"}));
}

TEST_F(DesktopNotifierTest, SignalsOfStrangeTypesCountForNothing) {
  NotificationService service(bus.address());
  notifier.post(hot("node"));
  settle(service, notifier);
  service.run([](sd_bus* from) {
    sd_bus_emit_signal(from, kPath, kService, "ActionInvoked", "su", "stop", 7U);
    sd_bus_emit_signal(from, kPath, kService, "ActionInvoked", "u", 7U);
    sd_bus_emit_signal(from, kPath, kService, "ActionInvoked", "");
    sd_bus_emit_signal(from, kPath, kService, "NotificationClosed", "s", "7");
    sd_bus_emit_signal(from, kPath, kService, "NotificationClosed", "u", 7U);
  });
  service.invoke(7, "calm");
  ASSERT_TRUE(turnUntil(loop, [&] { return !responses.empty(); }));
  EXPECT_THAT(responses, ElementsAre(NotificationResponse{"calm", "node"}));
}

TEST_F(DesktopNotifierTest, BytesThatAreNoTextAreRepaired) {
  NotificationService service(bus.address());
  notifier.post(hot("n\xff\xfe", "\xc3"));
  ASSERT_TRUE(untilShown(service, 1));
  EXPECT_EQ(service.shown().front().body, "\xef\xbf\xbd");
}

TEST_F(DesktopNotifierTest, AServiceThatRefusesOneIsSentTheNext) {
  std::atomic<int> calls = 0;
  NotificationService service(
      bus.address(), {.notify = [&](sd_bus_message* call) {
        return ++calls == 1 ? sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "no")
                            : sd_bus_reply_method_return(call, "s", "surprise");
      }});
  notifier.post(hot("node"));
  notifier.post(hot("Mail"));
  EXPECT_TRUE(turnUntil(loop, [&] { return calls == 2; }));
}

TEST_F(DesktopNotifierTest, AServiceThatCannotTellWhatItCanIsSentNothing) {
  for (const bool answersStrangely : {true, false}) {
    PrivateBus own;
    NotificationService service(
        own.address(), {.getCapabilities = [&](sd_bus_message* call) {
          return answersStrangely ? sd_bus_reply_method_return(call, "u", 5U)
                                  : sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "no");
        }});
    DesktopNotifier other(std::make_shared<BusConnection>(loop, own.address()));
    other.post(hot("node"));
    ASSERT_TRUE(turnUntil(loop, [&] { return service.calls("GetCapabilities") == 1; }));
    // It is asked again for the next one, not for the one that was dropped.
    ASSERT_TRUE(turnUntil(loop, [&] {
      other.post(hot("Mail"));
      sd_event_run(loop.event(), 10'000);
      return service.calls("GetCapabilities") >= 2;
    }));
    EXPECT_EQ(service.calls("Notify"), 0);
  }
}

TEST_F(DesktopNotifierTest, AServiceThatNeverAnswersKeepsAFewWaiting) {
  NotificationService service(bus.address(),
                              {.getCapabilities = [](sd_bus_message*) { return 1; }});
  for (int i = 0; i < 10'000; ++i) notifier.post(hot(std::to_string(i)));
  EXPECT_TRUE(turnUntil(loop, [&] { return service.calls("GetCapabilities") == 1; }));
}

TEST_F(DesktopNotifierTest, AnotherServiceIsAskedAnewAndKnowsNoFormerNumbers) {
  const BusPeer watched(*connection, kService, [](sd_bus*) {});
  {
    NotificationService service(bus.address());
    notifier.post(hot("node"));
    settle(service, notifier);
  }
  ASSERT_TRUE(turnUntil(loop, [&] { return watched.owner().empty(); }));
  NotificationService service(bus.address(), {.capabilities = {}, .firstNumber = 100});
  ASSERT_TRUE(turnUntil(loop, [&] { return !watched.owner().empty(); }));
  notifier.post(hot("node"));
  ASSERT_TRUE(untilShown(service, 1));
  EXPECT_EQ(service.shown().front().replaces, 0U);
  EXPECT_THAT(service.shown().front().actions, IsEmpty());
}

TEST_F(DesktopNotifierTest, ABusThatGoesAndComesBackIsUsedAgain) {
  {
    NotificationService service(bus.address());
    notifier.post(hot("node"));
    settle(service, notifier);
    bus.stop();
  }
  bool isDown = false;
  connection->onDown([&] { isDown = true; });
  ASSERT_TRUE(turnUntil(loop, [&] { return isDown; }));
  notifier.post(hot("lost"));
  bus.start();
  NotificationService service(bus.address());
  ASSERT_TRUE(turnUntil(loop, [&] {
    notifier.post(hot("Mail"));
    sd_event_run(loop.event(), 10'000);
    return !service.shown().empty();
  }));
  EXPECT_EQ(service.shown().front().title, "Mail is heating your Mac");
}

TEST_F(DesktopNotifierTest, WithoutABusOrAServiceItIsDropped) {
  CapturedTree tree;
  for (const std::string& address : {std::string(), "unix:path=" + tree.root() + "/missing"}) {
    DesktopNotifier other(std::make_shared<BusConnection>(loop, address));
    install(other);
    other.post(hot("node"));
    loop.turn();
  }
  notifier.post(hot("node"));
  bool isLater = false;
  const Scheduled later = loop.scheduler().after(0.05, [&] { isLater = true; });
  EXPECT_TRUE(turnUntil(loop, [&] { return isLater; }));
}

TEST_F(DesktopNotifierTest, ASocketThatNeverGreetsHoldsNobodyUp) {
  SilentSocket socket;
  DesktopNotifier other(std::make_shared<BusConnection>(loop, socket.address()));
  other.post(hot("node"));
  bool isLater = false;
  const Scheduled later = loop.scheduler().after(0.01, [&] { isLater = true; });
  EXPECT_TRUE(turnUntil(loop, [&] { return isLater; }));
}

}  // namespace
}  // namespace embrix
