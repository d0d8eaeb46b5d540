#include "surfaces/spring_curve.h"

#include <algorithm>
#include <cmath>

namespace embrix {

SpringCurve SpringCurve::of(Spring spring) {
  const SpringMotion motion(spring, 0, 1);
  SpringCurve curve{.duration = motion.settlingTime(kTolerance), .pieces = {}};
  if (curve.duration <= 0) return curve;

  // A cubic piece that has the value and the slope of the curve at both ends strays from a swing of
  // which it covers a sixteenth by less than a thousandth.
  constexpr int kPiecesASwing = 16;
  const int count = std::max(
      kPiecesASwing, static_cast<int>(std::ceil(curve.duration / spring.response * kPiecesASwing)));
  const double step = curve.duration / count;
  const double third = step / 3;
  curve.pieces.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double start = i * step;
    const double end = (i + 1) * step;
    const bool isLast = i + 1 == count;
    const auto at = [&](double time, double value) { return Point{time / curve.duration, value}; };
    curve.pieces.push_back(
        {.control1 = at(start + third, motion.valueAt(start) + motion.velocityAt(start) * third),
         .control2 = isLast ? at(end - third, 1)
                            : at(end - third, motion.valueAt(end) - motion.velocityAt(end) * third),
         .to = isLast ? Point{1, 1} : at(end, motion.valueAt(end))});
  }
  return curve;
}

}  // namespace embrix
