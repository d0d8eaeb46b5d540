#include "hosts/linux/logind_inhibitors.h"

#include <systemd/sd-bus.h>
#include <time.h>

#include <algorithm>
#include <utility>

#include "hosts/linux/bus_address.h"

namespace embrix {

namespace {

// A login service holds a few dozen at most; what claims more is not one.
constexpr std::size_t kMostInhibitors = 4096;

struct FreeMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, FreeMessage>;

// Microseconds of the clock by which the library waits.
std::uint64_t now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000 +
         static_cast<std::uint64_t>(time.tv_nsec) / 1000;
}

std::uint64_t until(std::uint64_t deadline) {
  const std::uint64_t present = now();
  return deadline > present ? deadline - present : 0;
}

std::optional<std::vector<LogindInhibitor>> parseReply(sd_bus_message* reply) {
  if (sd_bus_message_enter_container(reply, SD_BUS_TYPE_ARRAY, "(ssssuu)") < 0) return std::nullopt;
  std::vector<LogindInhibitor> inhibitors;
  while (inhibitors.size() < kMostInhibitors) {
    const char* what = nullptr;
    const char* who = nullptr;
    const char* why = nullptr;
    const char* mode = nullptr;
    std::uint32_t uid = 0;
    std::uint32_t pid = 0;
    const int read = sd_bus_message_read(reply, "(ssssuu)", &what, &who, &why, &mode, &uid, &pid);
    if (read < 0) return std::nullopt;
    if (read == 0) break;
    inhibitors.push_back({what, who, why, mode, uid, pid});
  }
  return inhibitors;
}

}  // namespace

void LogindInhibitors::CloseBus::operator()(sd_bus* bus) const {
  sd_bus_close_unref(bus);
}

LogindInhibitors::LogindInhibitors(Options options, std::function<double()> uptime)
    : options_(std::move(options)), uptime_(std::move(uptime)) {}

LogindInhibitors::~LogindInhibitors() = default;

std::optional<std::vector<LogindInhibitor>> LogindInhibitors::list() {
  if (nextTry_ && uptime_() < *nextTry_) return std::nullopt;
  const auto microseconds =
      static_cast<std::uint64_t>(std::max(options_.timeoutSeconds, 0.0) * 1e6);
  const std::uint64_t deadline = now() + microseconds;
  if (connect(deadline)) {
    if (auto inhibitors = ask(deadline)) return inhibitors;
  }
  bus_.reset();
  nextTry_ = uptime_() + options_.retrySeconds;
  return std::nullopt;
}

bool LogindInhibitors::connect(std::uint64_t deadline) {
  if (!bus_) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) < 0) return false;
    bus_.reset(bus);
    const std::string address = options_.address.empty() ? systemBusAddress() : options_.address;
    if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, 1) < 0 ||
        sd_bus_start(bus) < 0) {
      return false;
    }
  }
  return isReadyBefore(deadline);
}

// The library's own calls wait for as long as the other side takes to greet; hence this loop, which
// also takes in what has arrived since the last call.
bool LogindInhibitors::isReadyBefore(std::uint64_t deadline) {
  while (true) {
    const int processed = sd_bus_process(bus_.get(), nullptr);
    if (processed < 0) return false;
    if (processed > 0 && until(deadline) > 0) continue;
    if (sd_bus_is_ready(bus_.get()) > 0) return true;
    const std::uint64_t left = until(deadline);
    if (left == 0 || sd_bus_wait(bus_.get(), left) < 0) return false;
  }
}

std::optional<std::vector<LogindInhibitor>> LogindInhibitors::ask(std::uint64_t deadline) {
  sd_bus_message* made = nullptr;
  const int isMade = sd_bus_message_new_method_call(
      bus_.get(), &made, "org.freedesktop.login1", "/org/freedesktop/login1",
      "org.freedesktop.login1.Manager", "ListInhibitors");
  const Message call(made);
  if (isMade < 0) return std::nullopt;
  // A program that reads does not start services.
  sd_bus_message_set_auto_start(call.get(), 0);
  sd_bus_message* received = nullptr;
  // A time-out of 0 would mean the library's own, of many seconds.
  const std::uint64_t left = std::max<std::uint64_t>(until(deadline), 1);
  const int answered = sd_bus_call(bus_.get(), call.get(), left, nullptr, &received);
  const Message reply(received);
  if (answered < 0) return std::nullopt;
  return parseReply(reply.get());
}

}  // namespace embrix
