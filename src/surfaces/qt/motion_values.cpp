#include "surfaces/qt/motion_values.h"

#include <cmath>

#include <QPointF>

#include "surfaces/motion.h"
#include "surfaces/spring_curve.h"

namespace embrix {

namespace {

QPointF toQPoint(const Point& point) {
  return {point.x, point.y};
}

QEasingCurve bezier(QPointF control1, QPointF control2) {
  QEasingCurve curve(QEasingCurve::BezierSpline);
  curve.addCubicBezierSegment(control1, control2, {1, 1});
  return curve;
}

}  // namespace

void MotionValues::change(bool& value, bool to) {
  const bool wasStill = isStill();
  value = to;
  if (isStill() != wasStill) emit stillChanged();
}

void MotionValues::setFrozen(bool frozen) {
  change(isFrozen_, frozen);
}

void MotionValues::setReduced(bool reduced) {
  change(isReduced_, reduced);
}

QEasingCurve MotionValues::spring(double response, double dampingFraction) {
  QEasingCurve curve(QEasingCurve::BezierSpline);
  for (const SpringCurve::Piece& piece :
       SpringCurve::of({.response = response, .dampingFraction = dampingFraction}).pieces) {
    curve.addCubicBezierSegment(toQPoint(piece.control1), toQPoint(piece.control2),
                                toQPoint(piece.to));
  }
  return curve;
}

int MotionValues::springTime(double response, double dampingFraction) const {
  const Spring spring{.response = response, .dampingFraction = dampingFraction};
  return time(static_cast<int>(std::lround(SpringCurve::of(spring).duration * 1000)));
}

double MotionValues::appearDelay(int index) {
  return Motion::appearDelay(index);
}

QEasingCurve MotionValues::easeOut() {
  return bezier({0, 0}, {0.58, 1});
}

QEasingCurve MotionValues::easeInOut() {
  return bezier({0.42, 0}, {0.58, 1});
}

}  // namespace embrix
