// A D-Bus of the test's own, with a login service on it that answers what the test tells it to.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "captured_tree.h"
#include "hosts/linux/logind_inhibitors.h"

namespace embrix {

// A running dbus-daemon (the package "dbus"), ended with its owner.
class PrivateBus {
 public:
  PrivateBus() {
    address_ = "unix:path=" + folder_.root() + "/bus";
    folder_.write("config",
                  "<busconfig><type>session</type><listen>" + address_ +
                      "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                      "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>");
    start();
  }
  ~PrivateBus() { stop(); }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  // Again, at the same address.
  void start() {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    const std::string config = "--config-file=" + folder_.root() + "/config";
    const std::string print = "--print-address=" + std::to_string(ends[1]);
    std::string name = "dbus-daemon";
    std::string nofork = "--nofork";
    char* words[] = {name.data(), const_cast<char*>(config.c_str()), nofork.data(),
                     const_cast<char*>(print.c_str()), nullptr};
    // It complains there of limits that it may not raise.
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // It ends by a signal, also when the test's own program blocks those.
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    const int error = ::posix_spawnp(&pid_, "dbus-daemon", &actions, &attributes, words, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (error != 0) throw std::runtime_error("dbus-daemon is not installed");
    char byte = 0;
    const bool isUp = ::read(ends[0], &byte, 1) == 1;  // the address comes once it listens
    ::close(ends[0]);
    if (!isUp) throw std::runtime_error("dbus-daemon does not start");
  }
  void stop() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGTERM);
    ::waitpid(pid_, nullptr, 0);
    pid_ = 0;
  }

  const std::string& address() const { return address_; }

 private:
  CapturedTree folder_;
  std::string address_;
  pid_t pid_ = 0;
};

// org.freedesktop.login1 in a thread of its own, with ListInhibitors and nothing else.
class FakeLoginService {
 public:
  enum class Manner { answers, refuses, answersWithSomethingElse, neverAnswers };

  FakeLoginService(std::string address, std::vector<LogindInhibitor> inhibitors,
                   Manner manner = Manner::answers)
      : inhibitors_(std::move(inhibitors)), manner_(manner) {
    std::promise<bool> isUp;
    auto up = isUp.get_future();
    thread_ = std::thread([this, address, &isUp] { serve(address, isUp); });
    if (!up.get()) {
      thread_.join();
      throw std::runtime_error("the login service does not start");
    }
  }
  ~FakeLoginService() {
    isStopping_ = true;
    thread_.join();
  }
  FakeLoginService(const FakeLoginService&) = delete;
  FakeLoginService& operator=(const FakeLoginService&) = delete;

  int calls() const { return calls_; }

 private:
  static int listInhibitors(sd_bus_message* call, void* data, sd_bus_error* error) {
    auto* self = static_cast<FakeLoginService*>(data);
    ++self->calls_;
    switch (self->manner_) {
      case Manner::refuses:
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "no");
      case Manner::answersWithSomethingElse:
        return sd_bus_reply_method_return(call, "s", "surprise");
      case Manner::neverAnswers:
        return 1;
      case Manner::answers:
        break;
    }
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(call, &reply);
    sd_bus_message_open_container(reply, 'a', "(ssssuu)");
    for (const LogindInhibitor& i : self->inhibitors_) {
      sd_bus_message_append(reply, "(ssssuu)", i.what.c_str(), i.who.c_str(), i.why.c_str(),
                            i.mode.c_str(), i.uid, i.pid);
    }
    sd_bus_message_close_container(reply);
    const int sent = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return sent;
  }

  void serve(const std::string& address, std::promise<bool>& isUp) {
    static const sd_bus_vtable real[] = {SD_BUS_VTABLE_START(0),
                                         SD_BUS_METHOD("ListInhibitors", "", "a(ssssuu)",
                                                       listInhibitors, SD_BUS_VTABLE_UNPRIVILEGED),
                                         SD_BUS_VTABLE_END};
    static const sd_bus_vtable strange[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("ListInhibitors", "", "s", listInhibitors, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END};
    const sd_bus_vtable* table = manner_ == Manner::answersWithSomethingElse ? strange : real;
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    const bool isReady =
        sd_bus_set_address(bus, address.c_str()) >= 0 && sd_bus_set_bus_client(bus, 1) >= 0 &&
        sd_bus_start(bus) >= 0 &&
        sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/login1",
                                 "org.freedesktop.login1.Manager", table, this) >= 0 &&
        sd_bus_request_name(bus, "org.freedesktop.login1", 0) >= 0;
    isUp.set_value(isReady);
    while (isReady && !isStopping_) {
      if (sd_bus_process(bus, nullptr) < 0) break;
      sd_bus_wait(bus, 1000);  // microseconds
    }
    sd_bus_close_unref(bus);
  }

  std::vector<LogindInhibitor> inhibitors_;
  Manner manner_;
  std::atomic<bool> isStopping_ = false;
  std::atomic<int> calls_ = 0;
  std::thread thread_;
};

}  // namespace embrix
