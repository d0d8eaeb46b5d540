#include "surfaces/module/menu_bar_run.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>

#include "hosts/qt/menu_bar_place.h"
#include "surfaces/appearance_mode.h"
#include "surfaces/qt/content_values.h"

namespace embrix {

namespace {

constexpr std::string_view kNoPlace =
    "Embrix: this desktop has no place for menu bar items, so it opens as a window. Closing that "
    "ends it.\n";

}  // namespace

MenuBarRun::MenuBarRun(const WindowRun& run)
    : run_(run),
      scheduler_(run.loop.scheduler()),
      loop_(run.loop),
      popover_(engine_, run.model, scheduler_, actions(), PopoverWindow::Form::window) {
  engine_.values().motion().setFrozen(run_.isTestRun);
  engine_.values().setIdle([this] { return run_.desktop.idleSeconds(); });
  engine_.values().icons().setLookup(
      [this](const std::string& bundlePath) { return run_.icons.iconOf(bundlePath); });
  run_.desktop.onChange([this] { desktopChanged(); });
  desktopChanged();
}

DesktopActions MenuBarRun::actions() {
  DesktopActions actions;
  actions.openDashboard = [](DashboardSection) {};
  actions.openURL = [](const std::string& url) {
    QDesktopServices::openUrl(QUrl(toQString(url), QUrl::StrictMode));
  };
  actions.reveal = [](const std::string& folder) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(toQString(folder)));
  };
  actions.copy = [](const std::string& text) {
    QGuiApplication::clipboard()->setText(toQString(text));
  };
  actions.terminate = [] { QCoreApplication::quit(); };
  return actions;
}

void MenuBarRun::desktopChanged() {
  const AppearanceMode mode = currentAppearance(run_.model.defaults());
  const bool isDark = mode == AppearanceMode::dark || (mode == AppearanceMode::system &&
                                                       run_.desktop.prefersDark().value_or(false));
  engine_.values().palette().setAppearance(isDark ? EX::Appearance::dark : EX::Appearance::light);
  engine_.values().motion().setReduced(run_.desktop.reducesMotion());
  if (item_) item_->refresh();
  // At login the tray may come later than the programs that want to stand in it.
  if (isWaitingForPlace_ && takePlace()) isWaitingForPlace_ = false;
}

bool MenuBarRun::takePlace() {
  if (!hasMenuBarPlace()) return false;
  item_ = std::make_unique<MenuBarItem>(
      run_.model, scheduler_, [this] { return run_.desktop.reducesMotion(); },
      [this](std::optional<QPoint> anchor) { togglePopover(anchor); });
  popover_.setForm(PopoverWindow::Form::panel);
  return true;
}

void MenuBarRun::togglePopover(std::optional<QPoint> anchor) {
  if (popover_.isOpen()) {
    popover_.close();
  } else if (!popover_.wasJustClosed()) {
    popover_.open(anchor);
  }
}

void MenuBarRun::run() {
  if (!takePlace()) {
    isWaitingForPlace_ = true;
    run_.say(kNoPlace);
    QObject::connect(&popover_, &PopoverWindow::closed, &popover_, [this] {
      if (!item_) QCoreApplication::quit();
    });
    popover_.open(std::nullopt);
  }
  firstAppearance_.emplace(run_.model, scheduler_, run_.arguments, false, [](bool) {});
  loop_.run();
}

}  // namespace embrix
