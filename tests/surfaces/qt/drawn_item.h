// What an item paints, on nothing.
#pragma once

#include <QImage>
#include <QPainter>
#include <QQuickPaintedItem>

namespace embrix {

inline QImage drawn(QQuickPaintedItem& item) {
  QImage image(static_cast<int>(item.width()), static_cast<int>(item.height()),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  item.paint(&painter);
  return image;
}

}  // namespace embrix
