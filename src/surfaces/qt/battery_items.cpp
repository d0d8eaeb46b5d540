#include "surfaces/qt/battery_items.h"

#include <QPainter>

#include "surfaces/battery_art.h"
#include "surfaces/qt/picture_painter.h"

namespace embrix {

BatteryGlyphItem::BatteryGlyphItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(BatteryGlyph::kWidth, BatteryGlyph::kHeight);
  connect(this, &BatteryGlyphItem::changed, this, [this] { update(); });
}

void BatteryGlyphItem::paint(QPainter* painter) {
  PicturePainter::paint(
      *painter, BatteryGlyph::draw(fraction_, {color_.redF(), color_.greenF(), color_.blueF(), 1}));
}

BatteryArtItem::BatteryArtItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(BatteryArt::kUnits, BatteryArt::kHeight);
  connect(this, &BatteryArtItem::changed, this, [this] { update(); });
}

void BatteryArtItem::paint(QPainter* painter) {
  painter->scale(width() / BatteryArt::kUnits, width() / BatteryArt::kUnits);
  PicturePainter::paint(*painter, BatteryArt::draw(level_, pulse_, isPowered_));
}

}  // namespace embrix
