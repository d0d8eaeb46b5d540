#include "worlds/model_world.h"

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace embrix {

CivilDate greenwichDate(double date) {
  const std::chrono::year_month_day civil{
      std::chrono::sys_days(std::chrono::days(static_cast<int>(std::floor(date / 86400))))};
  return {.year = static_cast<int>(civil.year()),
          .month = static_cast<int>(static_cast<unsigned>(civil.month())),
          .day = static_cast<int>(static_cast<unsigned>(civil.day()))};
}

ModelWorld::ModelWorld(Records records) {
  if (records == Records::kept) store.directory = folder / "Embrix";
  scheduler.wall = kMorning;
  // What the program registers at its launch.
  defaults.registerDefault(SettingKeys::kSampleInterval, 2.0);
  defaults.registerDefault(SettingKeys::kShowWattsInMenuBar, true);
  defaults.registerDefault(SettingKeys::kAutomaticHeat, true);
  defaults.registerDefault(SettingKeys::kWarmWatts, 8.0);
  defaults.registerDefault(SettingKeys::kHotWatts, 15.0);
  defaults.registerDefault(SettingKeys::kRunawayNotifications, false);
  defaults.registerDefault(SettingKeys::kAlertWatts, 3.0);
  defaults.registerDefault(SettingKeys::kAlertMinutes, 5.0);
  renew();
}

PowerModelPorts ModelWorld::ports() {
  return {.scheduler = scheduler,
          .defaults = defaults,
          .controlSuite = &suite,
          .control = control,
          .notifier = notifier,
          .events = events,
          .controls = controls,
          .log = log,
          .powerLog = *host_.powerLog,
          .cleanup = CleanupPorts::of(host_),
          .user = {.uid = kMe, .homeDirectory = "/Users/ada"},
          .performanceCores = performanceCores,
          .store = store,
          .frames =
              [this](Frame old) {
                if (old.date != 0) spent.push_back(std::move(old));
                if (frames_.empty()) return std::optional<Frame>();
                auto next = std::move(frames_.front());
                frames_.pop_front();
                return next;
              },
          .calendar = greenwichDate};
}

PowerModel& ModelWorld::renew() {
  model_.reset();
  model_ = std::make_unique<PowerModel>(ports());
  return *model_;
}

PowerModel& ModelWorld::start() {
  model_->start();
  return *model_;
}

void ModelWorld::letSample(std::optional<Frame> frame) {
  constexpr double kLatest = 1e11;  // a frame may tell any date; the clock of a machine may not
  const std::optional<double> date = frame ? std::optional(frame->date) : std::nullopt;
  frames_.push_back(std::move(frame));
  while (true) {
    if (date && std::abs(*date) < kLatest) scheduler.wall = *date;
    scheduler.runBackground();
    if (frames_.empty()) return;
    if (!scheduler.advanceToNext()) throw std::logic_error("nobody samples");
  }
}

void ModelWorld::take(Frame frame) {
  letSample(std::move(frame));
}

void ModelWorld::takeNothing() {
  letSample(std::nullopt);
}

void ModelWorld::bringToLife(const Frame& frame) {
  for (const AppGroup& group : frame.groups) {
    for (const ProcessRow& each : group.processes) {
      control.living.insert({.pid = each.pid, .startTime = kStarted});
    }
  }
}

void ModelWorld::alertAt(double watts, double minutes) {
  defaults.set(SettingKeys::kRunawayNotifications, true);
  defaults.set(SettingKeys::kAlertWatts, watts);
  defaults.set(SettingKeys::kAlertMinutes, minutes);
}

}  // namespace embrix
