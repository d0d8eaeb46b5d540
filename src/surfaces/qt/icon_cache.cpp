#include "surfaces/qt/icon_cache.h"

#include <QFileIconProvider>
#include <QFileInfo>

#include "surfaces/qt/content_values.h"

namespace embrix {

namespace {

QIcon load(const ApplicationIcon& icon) {
  const QString text = toQString(icon.text);
  switch (icon.kind) {
    case ApplicationIcon::Kind::named:
      return QIcon::fromTheme(text);
    case ApplicationIcon::Kind::picture:
      return QIcon(text);
    case ApplicationIcon::Kind::ofBundle:
      return QFileIconProvider().icon(QFileInfo(text));
  }
  return {};
}

// A file that is no picture makes an icon as well, one that cannot be drawn.
bool isDrawable(const QIcon& icon) {
  constexpr int kProbe = 32;
  return !icon.pixmap(kProbe).isNull();
}

}  // namespace

QIcon IconCache::icon(const QString& bundlePath) {
  if (bundlePath.isEmpty() || !lookup_) return {};
  const auto known = known_.constFind(bundlePath);
  if (known != known_.cend()) return *known;
  const auto found = lookup_(bundlePath.toStdString());
  QIcon icon = found ? load(*found) : QIcon();
  if (!isDrawable(icon)) icon = {};
  known_.insert(bundlePath, icon);
  return icon;
}

}  // namespace embrix
