// A colour in sRGB, each part 0 to 1. Plain values; any thread.
#pragma once

namespace embrix {

struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double opacity = 1;

  // Of 8-bit parts, 0 to 255.
  static constexpr Color of(int red, int green, int blue) {
    return {red / 255.0, green / 255.0, blue / 255.0, 1};
  }
  constexpr Color withOpacity(double value) const { return {red, green, blue, value}; }

  bool operator==(const Color&) const = default;
};

}  // namespace embrix
