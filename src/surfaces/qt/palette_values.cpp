#include "surfaces/qt/palette_values.h"

#include <QString>

namespace embrix {

QColor toQColor(const Color& color) {
  return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                          static_cast<float>(color.blue), static_cast<float>(color.opacity));
}

PaletteValues::PaletteValues(QObject* parent) : QQmlPropertyMap(this, parent) {
  fill();
}

void PaletteValues::setAppearance(EX::Appearance appearance) {
  if (appearance == appearance_) return;
  appearance_ = appearance;
  fill();
  emit appearanceChanged();
}

void PaletteValues::fill() {
  for (const EX::Row& row : EX::table()) {
    insert(QString::fromUtf8(row.name.data(), static_cast<qsizetype>(row.name.size())),
           toQColor(EX::color(row.hue, appearance_)));
  }
}

}  // namespace embrix
