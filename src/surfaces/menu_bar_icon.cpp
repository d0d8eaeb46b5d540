#include "surfaces/menu_bar_icon.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <fmt/format.h>

namespace embrix {

namespace {

constexpr std::array<MenuBarIcon::Flicker, MenuBarIcon::kFrames> kFlicker = {{
    {1.0, 0.0},
    {0.9, -0.4},
    {0.97, 0.3},
    {0.93, 0.0},
}};

// The platform's own orange and red, not the program's.
constexpr Color kSystemOrange = Color::of(255, 149, 0);
constexpr Color kSystemRed = Color::of(255, 59, 48);

}  // namespace

std::string_view MenuBarIcon::symbol(LoadLevel level) {
  return level == LoadLevel::calm ? "flame" : "flame.fill";
}

std::optional<Color> MenuBarIcon::color(LoadLevel level) {
  switch (level) {
    case LoadLevel::calm:
      return std::nullopt;
    case LoadLevel::warm:
      return kSystemOrange;
    case LoadLevel::hot:
      return kSystemRed;
  }
  return std::nullopt;
}

MenuBarIcon::Flicker MenuBarIcon::flicker(int frame) {
  const int reduced = (frame % kFrames + kFrames) % kFrames;
  return kFlicker[static_cast<std::size_t>(reduced)];
}

Rect MenuBarIcon::place(const Flicker& flicker, double width, double height) {
  const double drawn = std::min(width, (2 - flicker.heightScale) * width);
  const double tall = flicker.heightScale * height;
  return {flicker.offset + (width - drawn) / 2, height - tall, drawn, tall};
}

std::string MenuBarIcon::key(LoadLevel level, int frame) {
  return fmt::format("{}-{}", loadLevelWord(level), frame);
}

}  // namespace embrix
