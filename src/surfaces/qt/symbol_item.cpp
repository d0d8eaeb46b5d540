#include "surfaces/qt/symbol_item.h"

#include <algorithm>

#include <QPainter>

#include "surfaces/qt/picture_painter.h"

namespace embrix {

SymbolItem::SymbolItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &SymbolItem::changed, this, [this] { update(); });
}

void SymbolItem::setSize(double size) {
  if (size == width() && size == height()) return;
  QQuickPaintedItem::setSize({size, size});
  emit changed();
}

void SymbolItem::paint(QPainter* painter) {
  PicturePainter::paintSymbol(*painter, name_.toStdString(), std::min(width(), height()), color_,
                              weight_);
}

}  // namespace embrix
