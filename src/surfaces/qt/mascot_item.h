// Paints the mascot. While it is seen and animated it asks for a frame whenever the next one is
// worth drawing; hidden or still it has no timer at all. Main thread only.
#pragma once

#include <optional>

#include <QPointF>
#include <QQuickPaintedItem>
#include <QTimer>
#include <QVariant>

#include "surfaces/mascot.h"
#include "surfaces/picture.h"

namespace embrix {

class MascotItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  // A Mood by its place.
  Q_PROPERTY(int mood READ mood WRITE setMood NOTIFY changed)
  // Edge of the figure's square in points; the item itself is larger by what hops and swings need,
  // and lies at `inset` outside of the square.
  Q_PROPERTY(double figure READ figure WRITE setFigure NOTIFY changed)
  Q_PROPERTY(double inset READ inset NOTIFY changed)
  Q_PROPERTY(double line READ line WRITE setLine NOTIFY changed)  // of strokes, units of 120
  Q_PROPERTY(bool animated READ isAnimated WRITE setAnimated NOTIFY changed)
  // Where memory was freed, seconds since 1970; null for never.
  Q_PROPERTY(QVariant relief READ relief WRITE setRelief NOTIFY changed)
  Q_PROPERTY(bool steaming READ isSteaming WRITE setSteaming NOTIFY changed)
  // The pointer in this item's coordinates; null while it is nowhere near.
  Q_PROPERTY(QVariant gaze READ gaze WRITE setGaze NOTIFY changed)
  // A time in seconds at which the figure is held, and a FrozenState by its place; null for
  // neither.
  Q_PROPERTY(QVariant frozenAt READ frozenAt WRITE setFrozenAt NOTIFY changed)
  Q_PROPERTY(QVariant frozenState READ frozenState WRITE setFrozenState NOTIFY changed)

 public:
  explicit MascotItem(QQuickItem* parent = nullptr);

  int mood() const { return static_cast<int>(mascot_.mood()); }
  void setMood(int mood);
  double figure() const { return figure_; }
  void setFigure(double figure);
  double inset() const;
  double line() const { return line_; }
  void setLine(double line);
  bool isAnimated() const { return isAnimated_; }
  void setAnimated(bool animated);
  QVariant relief() const { return relief_; }
  void setRelief(const QVariant& relief);
  bool isSteaming() const { return isSteaming_; }
  void setSteaming(bool steaming);
  QVariant gaze() const { return gaze_; }
  void setGaze(const QVariant& gaze);
  QVariant frozenAt() const { return frozenAt_; }
  void setFrozenAt(const QVariant& frozenAt);
  QVariant frozenState() const { return frozenState_; }
  void setFrozenState(const QVariant& frozenState);

  Q_INVOKABLE void tap();
  Q_INVOKABLE void hover(bool isOver);

  // Whether a frame is due without anybody's doing.
  bool isWaiting() const { return next_.isActive(); }

  void paint(QPainter* painter) override;

 signals:
  void changed();

 protected:
  void componentComplete() override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;

 private:
  template <typename Value>
  void take(Value& field, const Value& value);

  bool isStill() const;
  bool isSeen() const;
  Picture picture() const;
  Mascot::Surroundings surroundings() const;
  void redraw();
  void waitForNextFrame();

  Mascot mascot_;
  double figure_ = 120;
  double line_ = 4;
  bool isAnimated_ = true;
  QVariant relief_;
  bool isSteaming_ = false;
  QVariant gaze_;
  QVariant frozenAt_;
  QVariant frozenState_;
  QTimer next_;
  QMetaObject::Connection windowShown_;
};

}  // namespace embrix
