#include "surfaces/battery_art.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace embrix {
namespace {

// The bar is what is filled in mint or coral.
const Shape* bar(const Picture& picture) {
  for (const Shape& shape : picture.shapes) {
    if (shape.fill == EX::color(EX::Hue::mint) || shape.fill == EX::color(EX::Hue::coral)) {
      return &shape;
    }
  }
  return nullptr;
}

TEST(BatteryArtTest, TheBarIsAsLongAsTheLevel) {
  const Picture full = BatteryArt::draw(1, 0, false);
  EXPECT_EQ(bar(full)->path.bounds().width, 196);
  EXPECT_EQ(bar(full)->path.bounds().height, 104);
  EXPECT_EQ(bar(BatteryArt::draw(0.5, 0, false))->path.bounds().width, 98);
  EXPECT_EQ(bar(BatteryArt::draw(0, 0, false)), nullptr);
}

TEST(BatteryArtTest, TheBarIsCoralAtAFifthAndLess) {
  EXPECT_EQ(BatteryArt::barHue(0.2), EX::Hue::coral);
  EXPECT_EQ(BatteryArt::barHue(0.21), EX::Hue::mint);
}

TEST(BatteryArtTest, WhatIsNoLevelIsBroughtIntoTheBattery) {
  EXPECT_EQ(bar(BatteryArt::draw(7, 0, false))->path.bounds().width, 196);
  EXPECT_EQ(bar(BatteryArt::draw(-1, 0, false)), nullptr);
  EXPECT_EQ(bar(BatteryArt::draw(std::numeric_limits<double>::quiet_NaN(), 0, false)), nullptr);
  EXPECT_EQ(bar(BatteryGlyph::draw(std::numeric_limits<double>::quiet_NaN(), {})), nullptr);
}

TEST(BatteryArtTest, OnlyABatteryOnPowerShowsItsBolt) {
  EXPECT_LT(BatteryArt::draw(0.5, 0, false).shapes.size(),
            BatteryArt::draw(0.5, 0, true).shapes.size());
  EXPECT_NE(BatteryArt::draw(0.5, 0, true), BatteryArt::draw(0.5, 1, true));
  EXPECT_EQ(BatteryArt::draw(0.5, 0, false), BatteryArt::draw(0.5, 1, false));
}

TEST(BatteryArtTest, DrawingsStayInTheirBoxes) {
  for (const double level : {0.0, 0.03, 0.5, 1.0}) {
    for (const Shape& shape : BatteryArt::draw(level, 1, true).shapes) {
      const Rect box = Path().addPath(shape.path, shape.transform).bounds();
      EXPECT_GE(box.x - shape.lineWidth / 2, 0);
      EXPECT_GE(box.y - shape.lineWidth / 2, 0);
      EXPECT_LE(box.x + box.width + shape.lineWidth / 2, BatteryArt::kUnits);
      EXPECT_LE(box.y + box.height + shape.lineWidth / 2, BatteryArt::kHeight);
    }
    for (const Shape& shape : BatteryGlyph::draw(level, {}).shapes) {
      const Rect box = shape.path.bounds();
      EXPECT_GE(box.x - shape.lineWidth / 2, 0);
      EXPECT_LE(box.x + box.width + shape.lineWidth / 2, BatteryGlyph::kWidth);
      EXPECT_LE(box.y + box.height + shape.lineWidth / 2, BatteryGlyph::kHeight);
    }
  }
}

TEST(BatteryGlyphTest, TheBarIsAsLongAsTheFraction) {
  const double full = bar(BatteryGlyph::draw(1, {}))->path.bounds().width;
  EXPECT_NEAR(bar(BatteryGlyph::draw(0.5, {}))->path.bounds().width, full / 2, 1e-9);
}

}  // namespace
}  // namespace embrix
