#include "surfaces/menu_bar_icon.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(MenuBarIconTest, CalmIsAnOutlineInTheBarsOwnColour) {
  EXPECT_EQ(MenuBarIcon::symbol(LoadLevel::calm), "flame");
  EXPECT_FALSE(MenuBarIcon::color(LoadLevel::calm));
}

TEST(MenuBarIconTest, WarmIsFilledOrangeAndHotFilledRed) {
  EXPECT_EQ(MenuBarIcon::symbol(LoadLevel::warm), "flame.fill");
  EXPECT_EQ(MenuBarIcon::symbol(LoadLevel::hot), "flame.fill");
  EXPECT_EQ(MenuBarIcon::color(LoadLevel::warm), Color::of(255, 149, 0));
  EXPECT_EQ(MenuBarIcon::color(LoadLevel::hot), Color::of(255, 59, 48));
}

TEST(MenuBarIconTest, TheFlickerHasFourFramesThatComeAgain) {
  struct Case {
    int frame;
    double heightScale;
    double offset;
  };
  for (const Case& c : {Case{0, 1.0, 0.0}, Case{1, 0.9, -0.4}, Case{2, 0.97, 0.3},
                        Case{3, 0.93, 0.0}, Case{4, 1.0, 0.0}, Case{6, 0.97, 0.3}}) {
    EXPECT_EQ(MenuBarIcon::flicker(c.frame), (MenuBarIcon::Flicker{c.heightScale, c.offset}));
  }
}

TEST(MenuBarIconTest, AFlameStandsOnItsBase) {
  const Rect sunk = MenuBarIcon::place({.heightScale = 0.9, .offset = -0.4}, 10, 20);
  EXPECT_DOUBLE_EQ(sunk.width, 10);  // (2 - 0.9) × 10 would be wider than the canvas
  EXPECT_DOUBLE_EQ(sunk.x, -0.4);
  EXPECT_DOUBLE_EQ(sunk.height, 18);
  EXPECT_DOUBLE_EQ(sunk.y + sunk.height, 20);
  const Rect tall = MenuBarIcon::place({.heightScale = 1.2, .offset = 1}, 10, 20);
  EXPECT_DOUBLE_EQ(tall.width, 8);
  EXPECT_DOUBLE_EQ(tall.x, 2);
  EXPECT_DOUBLE_EQ(tall.y + tall.height, 20);
}

TEST(MenuBarIconTest, AFinishedImageIsKeptUnderLevelAndFrameAsAsked) {
  EXPECT_EQ(MenuBarIcon::key(LoadLevel::warm, 2), "warm-2");
  EXPECT_EQ(MenuBarIcon::key(LoadLevel::hot, 7), "hot-7");
}

}  // namespace
}  // namespace embrix
