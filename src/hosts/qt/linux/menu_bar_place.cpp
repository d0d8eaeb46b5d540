#include "hosts/qt/menu_bar_place.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QGuiApplication>

#include <xcb/xcb.h>

namespace embrix {

namespace {

bool hasNotifierHost() {
  const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected() || !bus.interface()->isServiceRegistered(watcher)) return false;
  const QDBusInterface facts(watcher, QStringLiteral("/StatusNotifierWatcher"), watcher, bus);
  return facts.property("IsStatusNotifierHostRegistered").toBool();
}

struct Freed {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Freed>;

// The tray of a screen is the owner of a selection that is named for it.
bool hasWindowTray(xcb_connection_t* display) {
  const QByteArray name = "_NET_SYSTEM_TRAY_S0";
  const auto named =
      xcb_intern_atom(display, 0, static_cast<std::uint16_t>(name.size()), name.constData());
  const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(display, named, nullptr));
  if (atom == nullptr) return false;
  const auto asked = xcb_get_selection_owner(display, atom->atom);
  const Owned<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(display, asked, nullptr));
  return reply != nullptr && reply->owner != XCB_NONE;
}

}  // namespace

bool hasMenuBarPlace() {
  if (hasNotifierHost()) return true;
  // Without a screen the toolkit offers the interface all the same, and no display behind it.
  if (QGuiApplication::platformName() != QLatin1String("xcb")) return false;
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr && hasWindowTray(x11->connection());
}

}  // namespace embrix
