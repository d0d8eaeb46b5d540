// The program's place in the menu bar, or in the tray of a desktop that has one. A click opens and
// closes the popover. Main thread only.
#pragma once

#include <functional>
#include <optional>

#include <QPoint>
#include <QSystemTrayIcon>

#include "surfaces/menu_bar_label.h"
#include "surfaces/qt/flame_images.h"

namespace embrix {

class MenuBarItem final : public QObject {
  Q_OBJECT

 public:
  // Only where there is a place for it. All outlive this. `clicked` is told where the item stands,
  // as far as the desktop says so.
  MenuBarItem(PowerModel& model, Scheduler& scheduler, std::function<bool()> reducesMotion,
              std::function<void(std::optional<QPoint>)> clicked);

  // For changes that tell nobody of themselves.
  void refresh() { label_.refresh(); }

  // How often the icon was handed to the desktop.
  int drawn() const { return drawn_; }

 private:
  void show(const MenuBarLabel::Content& label);
  std::optional<QPoint> anchor() const;

  QSystemTrayIcon tray_;
  FlameImages images_;
  int drawn_ = 0;
  MenuBarLabel label_;  // last: it shows itself as soon as it is made
};

}  // namespace embrix
