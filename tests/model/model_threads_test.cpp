// The model on real threads: frames made by the real sampler on one, files written by another,
// while the main thread takes the frames, reads the fields and acts. For the thread sanitizer above
// all.

#include <gtest/gtest.h>

#include <thread>
#include <utility>

#include <fmt/format.h>

#include "base/live_scheduler.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

constexpr int kFrames = 30;
constexpr int kProcesses = 20;
constexpr double kTick = 30;  // seconds: every frame saves, and every tick looks at everything

class ModelThreadsTest : public testing::Test {
 protected:
  ModelThreadsTest() {
    for (int i = 0; i < kProcesses; ++i) {
      const auto path = fmt::format("/Applications/App{0}.app/Contents/MacOS/App{0}", i);
      ScriptedProcess& process = machine.add(100 + i, path);
      process.raw.usage = RawUsage{.energyNJ = 0};
    }
    machine.hasBattery = true;
    // On the sampling thread.
    machine.onTick = [this] {
      machine.uptime += kTick;
      machine.wallTime += kTick;
      double watts = 0;
      for (ScriptedProcess& process : machine.processes) {
        watts += 0.5;
        *process.raw.usage->energyNJ += static_cast<std::uint64_t>(watts * kTick * 1e9);
      }
    };
    settings.registerDefault(SettingKeys::kSampleInterval, kTick);
    settings.registerDefault(SettingKeys::kShowWattsInMenuBar, true);
    settings.registerDefault(SettingKeys::kAutomaticHeat, true);
    settings.registerDefault(SettingKeys::kAlertMinutes, 5.0);
    settings.registerDefault(SettingKeys::kAlertWatts, 3.0);
    settings.registerDefault(SettingKeys::kRunawayNotifications, true);
  }

  PowerModelPorts ports() {
    return {.scheduler = scheduler,
            .defaults = settings,
            .controlSuite = &suite,
            .control = control,
            .notifier = notifier,
            .events = events,
            .controls = controls,
            .log = log,
            .powerLog = *nightHost.powerLog,
            .cleanup = CleanupPorts::of(host),
            .user = machine.user,
            .performanceCores = 4,
            .store = {folder / "Embrix"},
            .frames = framesOf(host),
            .calendar = greenwichDate};
  }

  // The main loop; time passes as fast as the threads let it.
  template <typename IsOver>
  void runUntil(IsOver isOver) {
    while (!isOver()) {
      up += 1;
      scheduler.turn();
      std::this_thread::yield();
    }
  }

  ScriptedHost machine;
  Host host = machine.host();
  ScriptedHost night;  // read by another thread, so another world
  Host nightHost = night.host();
  Settings settings{nullptr};
  MemorySettingsStore suite;
  ScriptedProcessControl control;
  ScriptedNotifier notifier;
  ScriptedSessionEvents events;
  ScriptedControlCenter controls;
  ScriptedLog log;
  ScratchFolder folder;
  double up = 1000;
  LiveScheduler scheduler{{.wallTime = [this] { return kMorning + up; },
                           .uptime = [this] { return up; },
                           .wakeAt = [](std::optional<double>) {},
                           .wakeNow = [] {},
                           .beginThread = [](WorkPriority) {}}};
};

TEST_F(ModelThreadsTest, FramesFilesAndActionsGoSideBySide) {
  {
    PowerModel model(ports());
    int told = 0;
    const Subscription frames = model.frame().subscribe([&](const std::optional<Frame>& frame) {
      ++told;
      for (const AppGroup& group : frame->groups) model.calm(group.processes);
      model.addCalmRule("App1",
                        told % 2 == 0 ? CalmRule::Condition::always : CalmRule::Condition::whenHot);
      if (told % 7 == 0) events.sleep();
      if (told % 7 == 1) events.wake();
    });
    model.start();
    runUntil([&] { return model.history()->points().size() >= kFrames; });
    EXPECT_EQ(told, kFrames);
    EXPECT_EQ((*model.frame())->groups.size(), static_cast<std::size_t>(kProcesses));
    EXPECT_FALSE(notifier.posted.empty());
    // The disk may be slower than all these frames.
    runUntil([&] { return folder.has("Embrix/archive.json"); });
  }  // while the next frame is made and files are written
  EXPECT_TRUE(HistoryStore{folder / "Embrix"}.loadArchive().has_value());
}

}  // namespace
}  // namespace embrix
