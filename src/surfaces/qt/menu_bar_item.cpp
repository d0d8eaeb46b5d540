#include "surfaces/qt/menu_bar_item.h"

#include <utility>

#include <QCursor>
#include <QGuiApplication>

#include "surfaces/qt/content_values.h"

namespace embrix {

namespace {

bool isMenuBar() {
  return QGuiApplication::platformName() == QLatin1String("cocoa");
}

}  // namespace

MenuBarItem::MenuBarItem(PowerModel& model, Scheduler& scheduler,
                         std::function<bool()> reducesMotion,
                         std::function<void(std::optional<QPoint>)> clicked)
    : images_(isMenuBar() ? FlameImages::Shape::bar : FlameImages::Shape::square),
      label_(model, scheduler,
             {.reducesMotion = std::move(reducesMotion),
              .show = [this](const auto& label) { show(label); }}) {
  connect(&tray_, &QSystemTrayIcon::activated, this,
          [this, clicked = std::move(clicked)](QSystemTrayIcon::ActivationReason reason) {
            if (reason != QSystemTrayIcon::MiddleClick) clicked(anchor());
          });
  tray_.show();
}

void MenuBarItem::show(const MenuBarLabel::Content& label) {
  ++drawn_;
  tray_.setIcon(images_.icon(label));
  const QString name = toQString(MenuBarIcon::kDescription);
  tray_.setToolTip(label.watts ? name + QStringLiteral(" · ") + toQString(*label.watts) : name);
}

std::optional<QPoint> MenuBarItem::anchor() const {
  const QRect place = tray_.geometry();
  if (!place.isEmpty()) return QPoint(place.center().x(), place.bottom());
  // Where the desktop does not say, the pointer stands on the item.
  const QPoint pointer = QCursor::pos();
  if (!pointer.isNull()) return pointer;
  return std::nullopt;
}

}  // namespace embrix
