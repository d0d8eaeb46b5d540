// What stands for the login session, the settings and the log in a replayed run: nothing of this
// machine. Main thread only.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/log.h"
#include "host/memory_settings_store.h"
#include "host/session.h"
#include "host/settings_store.h"
#include "hosts/replay/replay_host.h"
#include "hosts/replay/replay_loop.h"

namespace embrix {

// Every suite starts empty and is forgotten when it is closed.
class ThrowawaySettings final : public SettingsStores {
 public:
  std::unique_ptr<SettingsStore> open(const std::string&) override {
    return std::make_unique<MemorySettingsStore>();
  }
  bool hasSettings(const std::string&) override { return false; }
  void copySettings(const std::string&, const std::string&) override {}
};

class SilentLog final : public Log {
 public:
  void error(std::string_view, std::string_view) override {}
};

// Nobody to act on, and a loop whose time is the recording's.
inline Session replayedSession(const Replay& replay) {
  return absentSession(std::make_unique<ReplayLoop>(replay.finished, replay.moment));
}

}  // namespace embrix
