// The login service's list of inhibitors, asked for over the system's D-Bus. One thread at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sd_bus;

namespace embrix {

// One entry of org.freedesktop.login1.Manager.ListInhibitors.
struct LogindInhibitor {
  std::string what;  // "sleep:idle", words between colons
  std::string who;   // a name for people
  std::string why;
  std::string mode;  // "block", "block-weak" or "delay"
  std::uint32_t uid = 0;
  std::uint32_t pid = 0;

  bool operator==(const LogindInhibitor&) const = default;
};

// Absent when the list could not be had.
using InhibitorLister = std::function<std::optional<std::vector<LogindInhibitor>>()>;

// Keeps one connection for its life. No call takes longer than `timeoutSeconds`, and a failed one
// is followed by no other try for `retrySeconds`: a machine without D-Bus costs nothing.
class LogindInhibitors {
 public:
  struct Options {
    std::string address;  // as D-Bus writes it; empty for the system's bus
    double timeoutSeconds = 0.1;
    double retrySeconds = 60;
  };

  // `uptime`: seconds by a clock that never goes back.
  LogindInhibitors(Options options, std::function<double()> uptime);
  ~LogindInhibitors();
  LogindInhibitors(const LogindInhibitors&) = delete;
  LogindInhibitors& operator=(const LogindInhibitors&) = delete;

  std::optional<std::vector<LogindInhibitor>> list();

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const;
  };

  bool connect(std::uint64_t deadline);
  bool isReadyBefore(std::uint64_t deadline);
  std::optional<std::vector<LogindInhibitor>> ask(std::uint64_t deadline);

  Options options_;
  std::function<double()> uptime_;
  std::unique_ptr<sd_bus, CloseBus> bus_;
  std::optional<double> nextTry_;  // absent: at once
};

}  // namespace embrix
