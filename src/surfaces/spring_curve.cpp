#include "surfaces/spring_curve.h"

#include <cmath>

namespace embrix {

SpringCurve SpringCurve::of(Spring spring) {
  const SpringMotion motion(spring, 0, 1);
  SpringCurve curve{.duration = motion.settlingTime(kTolerance), .pieces = {}};
  if (curve.duration <= 0) return curve;

  // A cubic piece strays from a swing by its fourth power and the swing's height, which decays down
  // to the tolerance: the later a piece, the longer it may be.
  const double decay = std::log(1 / kTolerance) / 4;
  const auto timeOf = [&](int i) {
    return curve.duration / -decay * std::log1p(i * std::expm1(-decay) / kPieces);
  };
  curve.pieces.reserve(static_cast<std::size_t>(kPieces));
  for (int i = 0; i < kPieces; ++i) {
    const double start = timeOf(i);
    const double end = timeOf(i + 1);
    const double third = (end - start) / 3;
    const bool isLast = i + 1 == kPieces;
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
