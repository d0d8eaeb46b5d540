// The run of --background and --watch: the model, its records and what it does for the user,
// without a single window, until it is told to end. A replayed run ends with its recording, keeps
// settings of its own and writes no records but where it is told to.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "entry/launch.h"
#include "host/host.h"
#include "host/log.h"
#include "host/session.h"
#include "host/settings_store.h"

namespace embrix {

struct WindowlessRun {
  const std::vector<std::string>& arguments;
  SettingsStores& settings;
  // Identifier of the program as an application; absent for a run that carries over nothing.
  std::optional<std::string> identifier;
  // Made once the records are the run's own. Outlived by the host.
  std::function<Session()> session;
  Log& log;
  std::function<bool(std::string_view)> print;  // false when nobody reads any more
  bool isReplay = false;

  // Turns the session until the end. A problem, one sentence without a full stop, when the run
  // could not begin.
  std::optional<std::string> run(Host& host) const;
};

}  // namespace embrix
