// The program from its command line to its exit status: decides what kind of run this is, and wires
// it up.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/host.h"
#include "host/settings_store.h"

namespace embrix {

// What a run is given to work with.
struct Surroundings {
  std::function<Host()> host;  // this machine
  SettingsStores& settings;
  std::function<void(std::string_view)> print;     // to standard output, as it stands
  std::function<void(std::string_view)> complain;  // to standard error, as it stands
};

struct EmbrixApp {
  // `arguments` as the process got them, its own name first. The exit status: 0, or 2 after one
  // sentence of complaint about a recording that cannot be read or written.
  static int run(std::vector<std::string> arguments, const Surroundings& surroundings);
};

}  // namespace embrix
