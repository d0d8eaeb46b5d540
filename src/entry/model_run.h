// A run that lasts: the model, its records and what it does for the user, until it is told to end.
// Windows come from outside; --background and --watch have none. A replayed run ends with its
// recording, keeps settings of its own and writes no records but where it is told to.
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
#include "model/power_model.h"

namespace embrix {

struct ModelRun {
  const std::vector<std::string>& arguments;
  SettingsStores& settings;
  // Identifier of the program as an application; absent for a run that carries over nothing.
  std::optional<std::string> identifier;
  // Made once the records are the run's own. Outlived by the host.
  std::function<Session()> session;
  Log& log;
  std::function<bool(std::string_view)> print;  // false when nobody reads any more
  bool isReplay = false;
  // Shows the model in windows and turns the session's loop until the end. A problem, one sentence
  // without a full stop, when it could not. Empty for a run without windows.
  using Windows = std::function<std::optional<std::string>(PowerModel&, Session&, const Launch&)>;
  Windows windows = nullptr;

  // Turns the session until the end. A problem, one sentence without a full stop, when the run
  // could not begin.
  std::optional<std::string> run(Host& host) const;
};

}  // namespace embrix
