#include "surfaces/qt/icon_items.h"

#include <algorithm>

#include <QPainter>
#include <QQuickWindow>

#include "surfaces/app_icon_art.h"
#include "surfaces/qt/picture_painter.h"
#include "surfaces/qt/surface_values.h"

namespace embrix {

namespace {

constexpr double kUsualEdge = 32;  // points

QRectF middleSquare(const QQuickItem& item) {
  const double edge = std::min(item.width(), item.height());
  return {(item.width() - edge) / 2, (item.height() - edge) / 2, edge, edge};
}

}  // namespace

AppIconItem::AppIconItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(kUsualEdge, kUsualEdge);
}

void AppIconItem::paint(QPainter* painter) {
  const QRectF square = middleSquare(*this);
  painter->translate(square.topLeft());
  painter->scale(square.width() / IconArt::kUnits, square.width() / IconArt::kUnits);
  PicturePainter::paint(*painter, IconArt::draw());
}

BundleIconItem::BundleIconItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setImplicitSize(kUsualEdge, kUsualEdge);
}

void BundleIconItem::setBundlePath(const QString& bundlePath) {
  if (bundlePath == bundlePath_) return;
  bundlePath_ = bundlePath;
  if (isComponentComplete()) find();
}

void BundleIconItem::componentComplete() {
  QQuickPaintedItem::componentComplete();
  find();
}

void BundleIconItem::find() {
  SurfaceValues* const values = SurfaceValues::of(this);
  icon_ = values == nullptr ? QIcon() : values->icons().icon(bundlePath_);
  update();
  emit changed();
}

void BundleIconItem::paint(QPainter* painter) {
  if (icon_.isNull()) return;
  const QRectF square = middleSquare(*this);
  const double ratio = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
  const QPixmap pixmap = icon_.pixmap(square.size().toSize(), ratio);
  if (pixmap.isNull()) return;
  // The icon may be smaller than what was asked for, and need not be square.
  QRectF place({}, QSizeF(pixmap.size()).scaled(square.size(), Qt::KeepAspectRatio));
  place.moveCenter(square.center());
  painter->setRenderHint(QPainter::SmoothPixmapTransform);
  painter->drawPixmap(place, pixmap, QRectF(pixmap.rect()));
}

}  // namespace embrix
