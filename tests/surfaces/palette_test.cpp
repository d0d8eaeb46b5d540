#include "surfaces/palette.h"

#include <set>
#include <string_view>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(PaletteTest, AFixedColourIsTheSameInBothAppearances) {
  EXPECT_EQ(EX::color(EX::Hue::inkFixed, EX::Appearance::dark), Color::of(27, 24, 48));
  EXPECT_EQ(EX::color(EX::Hue::inkFixed), Color::of(27, 24, 48));
  EXPECT_EQ(EX::color(EX::Hue::pebble, EX::Appearance::dark), Color::of(221, 218, 230));
}

TEST(PaletteTest, ADynamicColourHasALightAndADarkValue) {
  EXPECT_EQ(EX::color(EX::Hue::ink, EX::Appearance::light), Color::of(27, 24, 48));
  EXPECT_EQ(EX::color(EX::Hue::ink, EX::Appearance::dark), Color::of(242, 241, 246));
  EXPECT_EQ(EX::color(EX::Hue::onPrimary, EX::Appearance::dark), Color::of(27, 24, 48));
}

TEST(PaletteTest, PartsAreFractionsOf255) {
  EXPECT_DOUBLE_EQ(EX::color(EX::Hue::mint).green, 219.0 / 255);
}

TEST(PaletteTest, EveryHueIsFoundByItsName) {
  std::set<std::string_view> names;
  for (const EX::Row& row : EX::table()) {
    EXPECT_EQ(EX::hueNamed(row.name), row.hue);
    EXPECT_EQ(EX::name(row.hue), row.name);
    names.insert(row.name);
  }
  EXPECT_EQ(names.size(), EX::table().size());
  EXPECT_FALSE(EX::hueNamed("no such colour"));
}

}  // namespace
}  // namespace embrix
