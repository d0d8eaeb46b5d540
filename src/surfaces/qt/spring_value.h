// A number that follows its target by a spring: a view binds to `value`. It starts at its target,
// or at `from` where that is set, and takes its speed along when the target changes on the way.
// While nothing moves no timer runs. Main thread only.
#pragma once

#include <optional>

#include <QAbstractAnimation>
#include <QQmlEngine>
#include <QQmlParserStatus>

#include "surfaces/spring.h"

namespace embrix {

class SpringValue : public QAbstractAnimation, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  Q_PROPERTY(double target READ target WRITE setTarget NOTIFY targetChanged)
  Q_PROPERTY(double value READ value NOTIFY valueChanged)
  Q_PROPERTY(double response MEMBER response_ NOTIFY springChanged)  // seconds
  Q_PROPERTY(double damping MEMBER damping_ NOTIFY springChanged)    // fraction
  // Where the value stands at first, and how long it waits there, in seconds.
  Q_PROPERTY(double from READ from WRITE setFrom NOTIFY fromChanged)
  Q_PROPERTY(double delay MEMBER delay_ NOTIFY springChanged)
  // What is still left of the way counts as nothing.
  Q_PROPERTY(double tolerance MEMBER tolerance_ NOTIFY springChanged)

 public:
  using QAbstractAnimation::QAbstractAnimation;

  double target() const { return target_; }
  void setTarget(double target);
  double value() const { return value_; }
  double from() const { return from_.value_or(target_); }
  void setFrom(double from);

  int duration() const override { return -1; }  // until it has settled

 signals:
  void targetChanged();
  void valueChanged();
  void springChanged();
  void fromChanged();

 protected:
  void updateCurrentTime(int milliseconds) override;
  void classBegin() override {}
  void componentComplete() override;

 private:
  void move();
  void setValue(double value);

  double target_ = 0;
  double value_ = 0;
  double response_ = 0.5;
  double damping_ = 0.8;
  double delay_ = 0;
  double tolerance_ = 0.001;
  std::optional<double> from_;
  bool isComplete_ = false;
  double wait_ = 0;  // seconds before the motion that runs begins
  std::optional<SpringMotion> motion_;
  double settled_ = 0;  // seconds of the motion that runs
};

}  // namespace embrix
