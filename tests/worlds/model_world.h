// A PowerModel with everything around it held in the test's hand: what it samples, the clock, the
// settings, the processes, the desktop and a folder for its records.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fakes/manual_scheduler.h"
#include "fakes/scratch_folder.h"
#include "fakes/scripted_host.h"
#include "fakes/scripted_notifier.h"
#include "fakes/scripted_process_control.h"
#include "fakes/scripted_session.h"
#include "host/memory_settings_store.h"
#include "model/power_model.h"
#include "model/setting_keys.h"
#include "worlds/frames.h"

namespace embrix {

// The days of Greenwich, so that a test's midnight is the same everywhere.
CivilDate greenwichDate(double date);

// 2025-06-15 00:00:00 in Greenwich.
inline constexpr double kMidnight = 1'749'945'600;
inline constexpr double kMorning = kMidnight + 9 * 3600;

enum class Records {
  kept,
  dropped,  // saves fail at once, which spares a long run the disk
};

class ModelWorld {
 public:
  explicit ModelWorld(Records records = Records::kept);
  ModelWorld(const ModelWorld&) = delete;
  ModelWorld& operator=(const ModelWorld&) = delete;

  ManualScheduler scheduler;  // it is morning
  Settings defaults{std::make_unique<MemorySettingsStore>()};
  MemorySettingsStore suite;  // shared with the control
  ScriptedProcessControl control;
  ScriptedNotifier notifier;
  ScriptedSessionEvents events;
  ScriptedControlCenter controls;
  ScriptedLog log;
  ScriptedHost machine;
  ScratchFolder folder;
  HistoryStore store;
  int performanceCores = 4;  // 10 W are warm, 18 W are hot

  PowerModel& model() { return *model_; }

  // Another model with the same things around it, as after a new start of the program.
  PowerModel& renew();
  PowerModel& start();

  // The model samples this, at the frame's date. Everything that follows is done: pauses are waited
  // for, files are written.
  void take(Frame frame);
  // Nothing comes from the sampler this time.
  void takeNothing();

  // The frames that were handed back to the sampler, each before the one it served for.
  std::vector<Frame> spent;

  // So that actions on the rows of the frame find their processes.
  void bringToLife(const Frame& frame);

  // The watts, minutes and switch of alerts.
  void alertAt(double watts, double minutes);

 private:
  void letSample(std::optional<Frame> frame);
  PowerModelPorts ports();

  Host host_ = machine.host();
  std::deque<std::optional<Frame>> frames_;
  std::unique_ptr<PowerModel> model_;
};

}  // namespace embrix
