#pragma once

#include "base/scheduler.h"
#include "cleanup/cleanup_ports.h"
#include "host/host.h"
#include "host/log.h"
#include "host/session.h"
#include "host/settings.h"
#include "host/settings_store.h"
#include "model/frame_source.h"
#include "records/calendar_day.h"
#include "records/history_store.h"

namespace embrix {

// What the model works with. Everything that is only referred to outlives the model.
struct PowerModelPorts {
  Scheduler& scheduler;
  Settings& defaults;
  SettingsStore* controlSuite = nullptr;  // shared with the control; null where there is none
  ProcessControl& control;
  Notifier& notifier;
  SessionEvents& events;
  ControlCenter& controls;
  Log& log;
  PowerLogSource& powerLog;
  CleanupPorts cleanup;
  UserFacts user;
  int performanceCores = 0;  // of this machine; 0 when unknown
  HistoryStore store;
  FrameSource frames;
  Calendar calendar = localDate;

  static PowerModelPorts of(Host& host, Session& session, Settings& defaults, Log& log,
                            HistoryStore store, SamplerOptions options = {}) {
    return {.scheduler = session.loop->scheduler(),
            .defaults = defaults,
            .controlSuite = nullptr,
            .control = *session.control,
            .notifier = *session.notifier,
            .events = *session.events,
            .controls = *session.controls,
            .log = log,
            .powerLog = *host.powerLog,
            .cleanup = CleanupPorts::of(host),
            .user = host.user,
            .performanceCores = host.machine.performanceCores.value_or(0),
            .store = std::move(store),
            .frames = framesOf(host, options)};
  }
};

}  // namespace embrix
