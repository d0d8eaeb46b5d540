// The colours of all surfaces, each under one name: those that are the same in both appearances,
// and those that have a light and a dark value. Plain values; any thread.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "surfaces/color.h"

namespace embrix {

struct EX {
  enum class Hue {
    // The same in both appearances.
    inkFixed,
    mint,
    mintSoft,
    coral,
    coralSoft,
    lavender,
    yellow,
    yellowSoft,
    blush,
    sky,
    pebble,
    // By appearance.
    ink,
    secondary,
    muted,
    ground,
    surface,
    well,
    track,
    hairline,
    rowHover,
    mintWash,
    primaryFill,
    onPrimary,
  };

  enum class Appearance { light, dark };

  struct Row {
    Hue hue;
    std::string_view name;
    Color light;
    Color dark;
  };

  static const std::array<Row, 23>& table();

  static Color color(Hue hue, Appearance appearance);
  // Of one that is the same in both.
  static Color color(Hue fixed) { return color(fixed, Appearance::light); }

  static std::string_view name(Hue hue);
  static std::optional<Hue> hueNamed(std::string_view name);

  static constexpr Color kWhite = Color::of(255, 255, 255);
};

}  // namespace embrix
