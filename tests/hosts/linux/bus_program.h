// Another program on a bus of the test's own: it answers as the test tells it to, in a thread of
// its own, and sends what the test has it send.
#pragma once

#include <systemd/sd-bus.h>

#include <atomic>
#include <deque>
#include <functional>
#include <future>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace embrix {

class BusProgram {
 public:
  // Answers a call; 0 or less without an answer is an error to the caller.
  using Answer = std::function<int(sd_bus_message*)>;
  using Answers = std::map<std::string, Answer>;  // by method

  // Takes the name, unless it is empty, and stands at the path.
  BusProgram(const std::string& address, const std::string& name, std::string path,
             Answers answers = {})
      : path_(std::move(path)), answers_(std::move(answers)) {
    const bool isUp = sd_bus_new(&bus_) >= 0 && sd_bus_set_address(bus_, address.c_str()) >= 0 &&
                      sd_bus_set_bus_client(bus_, 1) >= 0 && sd_bus_start(bus_) >= 0 &&
                      sd_bus_add_object(bus_, nullptr, path_.c_str(), answer, this) >= 0 &&
                      (name.empty() || sd_bus_request_name(bus_, name.c_str(), 0) >= 0);
    if (!isUp) throw std::runtime_error("no program on the bus");
    thread_ = std::thread([this] { serve(); });
  }
  ~BusProgram() {
    isStopping_ = true;
    thread_.join();
    sd_bus_close_unref(bus_);
  }
  BusProgram(const BusProgram&) = delete;
  BusProgram& operator=(const BusProgram&) = delete;

  // Does something with the connection, between two messages, and waits until it is done.
  void run(std::function<void(sd_bus*)> work) {
    std::promise<void> isDone;
    auto done = isDone.get_future();
    {
      const std::lock_guard lock(mutex_);
      work_.emplace_back([&](sd_bus* bus) {
        work(bus);
        isDone.set_value();
      });
    }
    done.get();
  }

  // How often the method was called.
  int calls(const std::string& method) {
    const std::lock_guard lock(mutex_);
    return calls_[method];
  }

 private:
  static int answer(sd_bus_message* call, void* data, sd_bus_error*) {
    auto* self = static_cast<BusProgram*>(data);
    const std::string method = sd_bus_message_get_member(call);
    const auto found = self->answers_.find(method);
    if (found == self->answers_.end()) return 0;
    const int answered = found->second(call);
    const std::lock_guard lock(self->mutex_);
    ++self->calls_[method];
    return answered;
  }

  void serve() {
    while (!isStopping_) {
      std::deque<std::function<void(sd_bus*)>> work;
      {
        const std::lock_guard lock(mutex_);
        work.swap(work_);
      }
      for (const auto& each : work) each(bus_);
      if (sd_bus_process(bus_, nullptr) == 0) sd_bus_wait(bus_, 1000);  // microseconds
      sd_bus_flush(bus_);
    }
  }

  const std::string path_;
  const Answers answers_;
  sd_bus* bus_ = nullptr;
  std::atomic<bool> isStopping_ = false;
  std::mutex mutex_;  // for what follows
  std::deque<std::function<void(sd_bus*)>> work_;
  std::map<std::string, int> calls_;
  std::thread thread_;
};

}  // namespace embrix
