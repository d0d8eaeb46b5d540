// The mascot as a picture: pure geometry of a face and a pose, in a space of 120 by 120 units.
// Plain functions; any thread.
#pragma once

#include "surfaces/mascot_features.h"
#include "surfaces/mascot_pose.h"
#include "surfaces/picture.h"

namespace embrix {

struct MascotFigure {
  static constexpr double kUnits = 120;  // edge of the square

  // How far a hop, a swing, steam and sleep reach over the square's edges.
  static constexpr double kOverhang = 14;

  // `scale` is the size in points over kUnits; `line` the width of strokes in units.
  static Picture draw(double scale, double line, const MascotFeatures& features,
                      const MascotPose& pose);

  // The outline of the body, in units.
  static Path face();
};

}  // namespace embrix
