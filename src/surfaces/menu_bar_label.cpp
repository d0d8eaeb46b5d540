#include "surfaces/menu_bar_label.h"

#include <utility>

#include <fmt/format.h>

#include "model/setting_keys.h"
#include "surfaces/surface_settings.h"

namespace embrix {

namespace {

constexpr double kHotPause = 0.11;  // seconds
constexpr double kWarmPause = 0.2;

}  // namespace

MenuBarLabel::MenuBarLabel(PowerModel& model, Scheduler& scheduler, Surroundings surroundings)
    : model_(model), scheduler_(scheduler), surroundings_(std::move(surroundings)) {
  subscriptions_.push_back(model_.frame().subscribe([this](const auto&) { refresh(); }));
  subscriptions_.push_back(model_.baseline().subscribe([this](const auto&) { refresh(); }));
  content_ = current();
  surroundings_.show(content_);
  waitForNextFrame();
}

void MenuBarLabel::refresh() {
  showIfChanged();
  waitForNextFrame();
}

double MenuBarLabel::flickerPause(double watts, double hotThreshold) {
  return watts >= hotThreshold ? kHotPause : kWarmPause;
}

bool MenuBarLabel::flickers() const {
  return model_.defaults().boolFor(SurfaceSettings::kAnimateMenuBarFlame) &&
         model_.loadLevel() != LoadLevel::calm && !surroundings_.reducesMotion();
}

MenuBarLabel::Content MenuBarLabel::current() const {
  Content content{.flame = {.level = model_.loadLevel(), .frame = std::nullopt}, .watts = {}};
  if (flickers()) content.flame.frame = flameFrame_;
  if (*model_.frame() && model_.defaults().boolFor(SettingKeys::kShowWattsInMenuBar)) {
    content.watts = fmt::format("{:.0f} W", model_.totalWatts());
  }
  return content;
}

void MenuBarLabel::showIfChanged() {
  Content newest = current();
  if (newest == content_) return;
  content_ = std::move(newest);
  surroundings_.show(content_);
}

void MenuBarLabel::waitForNextFrame() {
  if (!flickers()) {
    nextFrame_.cancel();
    return;
  }
  if (nextFrame_.isPending()) return;
  const double pause = flickerPause(model_.totalWatts(), model_.thresholds().hot);
  nextFrame_ = scheduler_.after(pause, [this] {
    flameFrame_ = (flameFrame_ + 1) % MenuBarIcon::kFrames;
    refresh();
  });
}

}  // namespace embrix
