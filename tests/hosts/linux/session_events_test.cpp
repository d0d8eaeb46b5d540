#include "hosts/linux/session_events.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "base/descriptor.h"
#include "bus_program.h"
#include "private_bus.h"
#include "silent_socket.h"
#include "turned_loop.h"

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kService = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kInterface = "org.freedesktop.login1.Manager";

// The login service, with its locks: each is one end of a pipe, and the other end tells whether it
// is still held.
class LoginService {
 public:
  explicit LoginService(const std::string& address, BusProgram::Answer inhibit = nullptr)
      : program_(std::make_unique<BusProgram>(
            address, kService, kPath,
            BusProgram::Answers{{"Inhibit", inhibit ? inhibit : [this](sd_bus_message* call) {
                                   return giveLock(call);
                                 }}})) {}

  int calls() { return program_->calls("Inhibit"); }

  std::string asked() {
    const std::lock_guard lock(mutex_);
    return asked_;
  }

  // How many locks are held now.
  int held() {
    const std::lock_guard lock(mutex_);
    int held = 0;
    for (const Descriptor& end : ends_) {
      pollfd look = {end.number(), 0, 0};
      if (::poll(&look, 1, 0) == 0) ++held;
    }
    return held;
  }

  void prepareForSleep(bool begins) {
    program_->run([&](sd_bus* bus) {
      sd_bus_emit_signal(bus, kPath, kInterface, "PrepareForSleep", "b", begins ? 1 : 0);
    });
  }
  void run(std::function<void(sd_bus*)> work) { program_->run(std::move(work)); }

 private:
  int giveLock(sd_bus_message* call) {
    const char* what = nullptr;
    const char* who = nullptr;
    const char* why = nullptr;
    const char* mode = nullptr;
    if (sd_bus_message_read(call, "ssss", &what, &who, &why, &mode) < 0) return 0;
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return 0;
    {
      const std::lock_guard lock(mutex_);
      asked_ = std::string(what) + "/" + who + "/" + mode;
      ends_.emplace_back(ends[0]);
    }
    // The message has one of its own.
    const int sent = sd_bus_reply_method_return(call, "h", ends[1]);
    ::close(ends[1]);
    return sent;
  }

  std::mutex mutex_;  // for what follows
  std::string asked_;
  std::vector<Descriptor> ends_;
  std::unique_ptr<BusProgram> program_;
};

class LinuxSessionEventsTest : public testing::Test {
 protected:
  void listen(LinuxSessionEvents& to) {
    to.listen({.willSleep = [this] { note("sleep"); },
               .didWake = [this] { note("wake"); },
               .willTerminate = [this] { note("end"); }});
  }
  void note(const std::string& what) {
    log.push_back(service ? what + " with " + std::to_string(service->held()) : what);
  }
  bool untilHeld(int count) {
    return turnUntil(loop, [&] { return service->held() == count; });
  }

  PrivateBus bus;
  std::unique_ptr<LoginService> service = std::make_unique<LoginService>(bus.address());
  LinuxEventLoop loop;
  LinuxSessionEvents events{loop, std::make_shared<BusConnection>(loop, bus.address())};
  std::vector<std::string> log;
};

TEST_F(LinuxSessionEventsTest, ALockThatDelaysSleepIsHeldWhileSomebodyListens) {
  listen(events);
  ASSERT_TRUE(untilHeld(1));
  EXPECT_EQ(service->asked(), "sleep/Embrix/delay");
}

TEST_F(LinuxSessionEventsTest, NobodyListensNothingIsAsked) {
  loop.turn();
  EXPECT_EQ(service->calls(), 0);
}

TEST_F(LinuxSessionEventsTest, SleepIsToldBeforeTheLockIsGivenUpAndWakeTakesANewOne) {
  listen(events);
  ASSERT_TRUE(untilHeld(1));
  service->prepareForSleep(true);
  ASSERT_TRUE(turnUntil(loop, [&] { return !log.empty(); }));
  EXPECT_TRUE(untilHeld(0));
  service->prepareForSleep(false);
  ASSERT_TRUE(turnUntil(loop, [&] { return log.size() == 2; }));
  EXPECT_TRUE(untilHeld(1));
  EXPECT_THAT(log, ElementsAre("sleep with 1", "wake with 0"));
  // The service counts a call once it has answered it.
  EXPECT_TRUE(turnUntil(loop, [&] { return service->calls() == 2; }));
}

TEST_F(LinuxSessionEventsTest, TheSecondListenerTakesThePlaceOfTheFirst) {
  listen(events);
  std::vector<std::string> second;
  events.listen(
      {.willSleep = [&] { second.emplace_back("sleep"); }, .didWake = {}, .willTerminate = {}});
  ASSERT_TRUE(untilHeld(1));
  service->prepareForSleep(true);
  ASSERT_TRUE(turnUntil(loop, [&] { return !second.empty(); }));
  service->prepareForSleep(false);
  EXPECT_TRUE(untilHeld(1));
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(LinuxSessionEventsTest, ARestartedServiceIsAskedForALockAgain) {
  listen(events);
  ASSERT_TRUE(untilHeld(1));
  service.reset();
  service = std::make_unique<LoginService>(bus.address());
  EXPECT_TRUE(untilHeld(1));
  service->prepareForSleep(true);
  EXPECT_TRUE(turnUntil(loop, [&] { return !log.empty(); }));
}

TEST_F(LinuxSessionEventsTest, ABusThatGoesAndComesBackIsListenedToAgain) {
  listen(events);
  ASSERT_TRUE(untilHeld(1));
  service.reset();
  bus.stop();
  bus.start();
  service = std::make_unique<LoginService>(bus.address());
  EXPECT_TRUE(untilHeld(1));
}

TEST_F(LinuxSessionEventsTest, SignalsOfStrangeTypesOrOfAnybodyElseCountForNothing) {
  auto system = std::make_shared<BusConnection>(loop, bus.address());
  LinuxSessionEvents own(loop, system);
  listen(own);
  ASSERT_TRUE(untilHeld(1));
  service->run([](sd_bus* from) {
    sd_bus_emit_signal(from, kPath, kInterface, "PrepareForSleep", "s", "true");
    sd_bus_emit_signal(from, kPath, kInterface, "PrepareForSleep", "");
  });
  const char* self = nullptr;
  ASSERT_GE(sd_bus_get_unique_name(system->bus(), &self), 0);
  const std::string us = self;
  BusProgram stranger(bus.address(), "", "/stranger");
  stranger.run([&](sd_bus* from) {
    sd_bus_message* signal = nullptr;
    sd_bus_message_new_signal(from, &signal, kPath, kInterface, "PrepareForSleep");
    sd_bus_message_append(signal, "b", 1);
    sd_bus_send_to(from, signal, us.c_str(), nullptr);
    sd_bus_message_unref(signal);
    sd_bus_call_method(from, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                       "org.freedesktop.DBus", "GetId", nullptr, nullptr, "");
  });
  service->prepareForSleep(false);
  ASSERT_TRUE(turnUntil(loop, [&] { return !log.empty(); }));
  EXPECT_THAT(log, ElementsAre("wake with 1"));
}

TEST_F(LinuxSessionEventsTest, WithoutALockSleepIsToldAllTheSame) {
  const std::vector<BusProgram::Answer> manners = {
      [](sd_bus_message* call) {
        return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_ACCESS_DENIED, "no");
      },
      [](sd_bus_message* call) { return sd_bus_reply_method_return(call, "s", "surprise"); },
      [](sd_bus_message*) { return 1; }};
  for (const auto& inhibit : manners) {
    PrivateBus other;
    LoginService strange(other.address(), inhibit);
    LinuxSessionEvents own(loop, std::make_shared<BusConnection>(loop, other.address()));
    log.clear();
    listen(own);
    ASSERT_TRUE(turnUntil(loop, [&] { return strange.calls() == 1; }));
    strange.prepareForSleep(true);
    ASSERT_TRUE(turnUntil(loop, [&] { return !log.empty(); }));
  }
}

TEST_F(LinuxSessionEventsTest, TheEndIsToldWhateverElseIsThere) {
  SilentSocket socket;
  service.reset();
  for (const std::string& address : {std::string(), socket.address(), bus.address()}) {
    LinuxEventLoop own;
    LinuxSessionEvents listening(own, std::make_shared<BusConnection>(own, address));
    log.clear();
    listen(listening);
    ::kill(::getpid(), SIGTERM);
    own.run();
    EXPECT_THAT(log, ElementsAre("end"));
  }
}

}  // namespace
}  // namespace embrix
