// Paints the two drawings of a battery. Main thread only.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace embrix {

class BatteryGlyphItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(BatteryGlyph)
  Q_PROPERTY(double fraction MEMBER fraction_ NOTIFY changed)  // 0 to 1
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)        // of the outline

 public:
  explicit BatteryGlyphItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void changed();

 private:
  double fraction_ = 0;
  QColor color_;
};

// As wide as it is made, and in proportion as high.
class BatteryArtItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(BatteryArt)
  Q_PROPERTY(double level MEMBER level_ NOTIFY changed)  // 0 to 1
  Q_PROPERTY(double pulse MEMBER pulse_ NOTIFY changed)  // 0 to 1
  Q_PROPERTY(bool powered MEMBER isPowered_ NOTIFY changed)

 public:
  explicit BatteryArtItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

 signals:
  void changed();

 private:
  double level_ = 0;
  double pulse_ = 0;
  bool isPowered_ = false;
};

}  // namespace embrix
