// The drawings of a battery: the large one of the battery page and the small one beside a figure.
// Pure geometry. Plain functions; any thread.
#pragma once

#include "surfaces/palette.h"
#include "surfaces/picture.h"

namespace embrix {

struct BatteryArt {
  static constexpr double kUnits = 260;  // width of the large drawing
  static constexpr double kHeight = 140;

  static constexpr double kLow = 0.2;  // at and below this level the bar is coral

  // `level` 0 to 1. `pulse` 0 to 1 is how far the glow of a battery on power has swelled; it shows
  // only while `powered`.
  static Picture draw(double level, double pulse, bool powered);

  static EX::Hue barHue(double level);
};

struct BatteryGlyph {
  static constexpr double kWidth = 22;  // points
  static constexpr double kHeight = 12;

  // `fraction` 0 to 1; `ink` is the colour of the outline.
  static Picture draw(double fraction, Color ink);
};

}  // namespace embrix
