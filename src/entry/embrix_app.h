// The program from its command line to its exit status: decides what kind of run this is, and wires
// it up.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/host.h"
#include "host/log.h"
#include "host/session.h"
#include "host/settings_store.h"
#include "surfaces/window_module.h"

namespace embrix {

// What a run is given to work with.
struct Surroundings {
  std::function<Host()> host;        // this machine
  std::function<Session()> session;  // the login session on it
  std::function<std::unique_ptr<Log>()> log;
  SettingsStores& settings;
  std::optional<std::string> identifier;  // of the program as an application
  // The windows, loaded when they are first wanted, or one sentence about why there are none.
  std::function<std::variant<const WindowModule*, std::string>()> windows;
  // To standard output, as it stands; false when nobody reads that any more.
  std::function<bool(std::string_view)> print;
  std::function<void(std::string_view)> complain;  // to standard error, as it stands
};

struct EmbrixApp {
  // `arguments` as the process got them, its own name first. The exit status: 0, or 2 after one
  // sentence of complaint about a recording that cannot be read or written, or about records that
  // another Embrix keeps, about windows that cannot be shown, or about a system that has nothing
  // left to run it with.
  static int run(const std::vector<std::string>& arguments, const Surroundings& surroundings);
};

}  // namespace embrix
