// The colours of the surfaces as properties that views bind to, each under its name; they change
// with the appearance. Also the answer to which appearance it is. Main thread only.
#pragma once

#include <QColor>
#include <QQmlEngine>
#include <QQmlPropertyMap>

#include "surfaces/palette.h"

namespace embrix {

QColor toQColor(const Color& color);

class PaletteValues final : public QQmlPropertyMap {
  Q_OBJECT
  QML_NAMED_ELEMENT(EX)
  QML_SINGLETON

 public:
  explicit PaletteValues(QObject* parent);
  static PaletteValues* create(QQmlEngine* engine, QJSEngine*);

  EX::Appearance appearance() const { return appearance_; }
  void setAppearance(EX::Appearance appearance);

 signals:
  void appearanceChanged();

 private:
  void fill();

  EX::Appearance appearance_ = EX::Appearance::light;
};

}  // namespace embrix
