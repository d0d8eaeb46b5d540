#include "surfaces/palette.h"

#include <cstddef>

namespace embrix {

namespace {

constexpr EX::Row fixed(EX::Hue hue, std::string_view name, Color color) {
  return {hue, name, color, color};
}

constexpr std::array<EX::Row, 23> kTable = {{
    fixed(EX::Hue::inkFixed, "inkFixed", Color::of(27, 24, 48)),
    fixed(EX::Hue::mint, "mint", Color::of(61, 219, 180)),
    fixed(EX::Hue::mintSoft, "mintSoft", Color::of(168, 240, 220)),
    fixed(EX::Hue::coral, "coral", Color::of(255, 106, 61)),
    fixed(EX::Hue::coralSoft, "coralSoft", Color::of(255, 177, 153)),
    fixed(EX::Hue::lavender, "lavender", Color::of(201, 187, 255)),
    fixed(EX::Hue::yellow, "yellow", Color::of(255, 212, 82)),
    fixed(EX::Hue::yellowSoft, "yellowSoft", Color::of(255, 230, 154)),
    fixed(EX::Hue::blush, "blush", Color::of(255, 179, 199)),
    fixed(EX::Hue::sky, "sky", Color::of(127, 211, 255)),
    fixed(EX::Hue::pebble, "pebble", Color::of(221, 218, 230)),
    {EX::Hue::ink, "ink", Color::of(27, 24, 48), Color::of(242, 241, 246)},
    {EX::Hue::secondary, "secondary", Color::of(63, 59, 85), Color::of(201, 197, 218)},
    {EX::Hue::muted, "muted", Color::of(94, 90, 114), Color::of(162, 157, 184)},
    {EX::Hue::ground, "ground", Color::of(242, 241, 246), Color::of(20, 18, 28)},
    {EX::Hue::surface, "surface", Color::of(255, 255, 255), Color::of(34, 31, 46)},
    {EX::Hue::well, "well", Color::of(242, 241, 246), Color::of(45, 42, 59)},
    {EX::Hue::track, "track", Color::of(236, 234, 242), Color::of(51, 47, 67)},
    {EX::Hue::hairline, "hairline", Color::of(228, 226, 236), Color::of(46, 42, 61)},
    {EX::Hue::rowHover, "rowHover", Color::of(246, 245, 250), Color::of(42, 39, 56)},
    {EX::Hue::mintWash, "mintWash", Color::of(230, 251, 245), Color::of(23, 58, 51)},
    {EX::Hue::primaryFill, "primaryFill", Color::of(27, 24, 48), Color::of(242, 241, 246)},
    {EX::Hue::onPrimary, "onPrimary", Color::of(255, 255, 255), Color::of(27, 24, 48)},
}};

// A hue is the place of its row.
constexpr bool isInOrder() {
  for (std::size_t i = 0; i < kTable.size(); ++i) {
    if (static_cast<std::size_t>(kTable[i].hue) != i) return false;
  }
  return true;
}
static_assert(isInOrder());

}  // namespace

const std::array<EX::Row, 23>& EX::table() {
  return kTable;
}

Color EX::color(Hue hue, Appearance appearance) {
  const Row& row = kTable[static_cast<std::size_t>(hue)];
  return appearance == Appearance::dark ? row.dark : row.light;
}

std::string_view EX::name(Hue hue) {
  return kTable[static_cast<std::size_t>(hue)].name;
}

std::optional<EX::Hue> EX::hueNamed(std::string_view name) {
  for (const Row& row : kTable) {
    if (row.name == name) return row.hue;
  }
  return std::nullopt;
}

}  // namespace embrix
