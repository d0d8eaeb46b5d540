// A spring as an easing curve, for toolkits that animate along curves: progress from (0, 0) to
// (1, 1) in cubic pieces, over the time that the spring takes to settle. Plain values; any thread.
#pragma once

#include <vector>

#include "surfaces/geometry.h"
#include "surfaces/spring.h"

namespace embrix {

struct SpringCurve {
  // From the end of the piece before, at first from (0, 0).
  struct Piece {
    Point control1;
    Point control2;
    Point to;
  };

  // What is left of the way when the curve ends: less than a pixel of any surface.
  static constexpr double kTolerance = 0.001;

  // The most that a curve of Qt 6.4 has room for; it writes past its end for more.
  static constexpr int kPieces = 10;

  double duration = 0;        // seconds; 0 without pieces
  std::vector<Piece> pieces;  // x is the part of `duration`, rising; y the part of the way

  static SpringCurve of(Spring spring);
};

}  // namespace embrix
