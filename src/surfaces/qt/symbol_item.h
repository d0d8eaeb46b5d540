// Paints one symbol in one colour. Main thread only.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>

namespace embrix {

class SymbolItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(SymbolImage)
  Q_PROPERTY(QString name MEMBER name_ NOTIFY changed)
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
  // Strokes against the regular ones.
  Q_PROPERTY(double weight MEMBER weight_ NOTIFY changed)
  // Edge of the square in points, for both sides of the item at once.
  Q_PROPERTY(double size READ size WRITE setSize NOTIFY changed)

 public:
  explicit SymbolItem(QQuickItem* parent = nullptr);

  double size() const { return width(); }
  void setSize(double size);

  void paint(QPainter* painter) override;

 signals:
  void changed();

 private:
  QString name_;
  QColor color_;
  double weight_ = 1;
};

}  // namespace embrix
