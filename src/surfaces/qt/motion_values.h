// Whether anything moves, and the curves of what does, as views ask for them. Main thread only.
#pragma once

#include <QEasingCurve>
#include <QObject>
#include <QQmlEngine>

namespace embrix {

class MotionValues final : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(Motion)
  QML_SINGLETON
  // Nothing moves: every animation stands at its end from the start.
  Q_PROPERTY(bool still READ isStill NOTIFY stillChanged)
  // The curves of what eases.
  Q_PROPERTY(QEasingCurve easeOut READ easeOut CONSTANT)
  Q_PROPERTY(QEasingCurve easeInOut READ easeInOut CONSTANT)

 public:
  explicit MotionValues(QObject* parent) : QObject(parent) {}
  static MotionValues* create(QQmlEngine* engine, QJSEngine*);

  // In a test run and where pictures are taken.
  bool isFrozen() const { return isFrozen_; }
  void setFrozen(bool frozen);
  // What the user has asked of the system.
  void setReduced(bool reduced);
  bool isStill() const { return isFrozen_ || isReduced_; }

  // A spring as an easing curve, with the milliseconds that belong to it; 0 while nothing moves.
  Q_INVOKABLE static QEasingCurve spring(double response, double dampingFraction);
  Q_INVOKABLE int springTime(double response, double dampingFraction) const;
  // So many milliseconds, or 0 while nothing moves.
  Q_INVOKABLE int time(int milliseconds) const { return isStill() ? 0 : milliseconds; }
  // Seconds that the row of a list waits before it comes up.
  Q_INVOKABLE static double appearDelay(int index);

  static QEasingCurve easeOut();
  static QEasingCurve easeInOut();

 signals:
  void stillChanged();

 private:
  void change(bool& value, bool to);

  bool isFrozen_ = false;
  bool isReduced_ = false;
};

}  // namespace embrix
