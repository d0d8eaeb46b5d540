#include "surfaces/menu_bar_label.h"

#include <vector>

#include <gtest/gtest.h>

#include "worlds/model_world.h"

namespace embrix {
namespace {

constexpr const char* kAnimate = "animateMenuBarFlame";

// At 4 performance cores 10 W are warm and 18 W are hot.
class MenuBarLabelTest : public testing::Test {
 protected:
  MenuBarLabelTest() {
    world.defaults.set(SettingKeys::kShowWattsInMenuBar, true);
    world.defaults.set(SettingKeys::kAutomaticHeat, true);
    world.defaults.set(kAnimate, true);
    world.start();
  }

  void take(double watts) { world.take(frameAt(world.scheduler.wall, {app("Xcode", watts)})); }

  MenuBarLabel label() {
    return MenuBarLabel(world.model(), world.scheduler,
                        {.reducesMotion = [this] { return reducesMotion; },
                         .show = [this](const auto& content) { shown.push_back(content); }});
  }

  ModelWorld world;
  bool reducesMotion = false;
  std::vector<MenuBarLabel::Content> shown;
};

TEST_F(MenuBarLabelTest, WithoutAFrameTheStillFlameStandsAlone) {
  const auto label = this->label();
  EXPECT_EQ(label.content(), (MenuBarLabel::Content{}));
  EXPECT_EQ(shown.size(), 1u);
}

TEST_F(MenuBarLabelTest, WattsAreWholeAndGoWithTheirSetting) {
  auto label = this->label();
  take(7.6);
  EXPECT_EQ(label.content().watts, "8 W");
  world.defaults.set(SettingKeys::kShowWattsInMenuBar, false);
  label.refresh();
  EXPECT_FALSE(label.content().watts);
}

TEST_F(MenuBarLabelTest, TheBatterysFigureCountsWhenItIsLarger) {
  const auto label = this->label();
  Frame frame = frameAt(world.scheduler.wall, {app("Xcode", 2)});
  frame.battery = onBattery(50);
  frame.battery->systemWatts = 6;
  world.take(frame);
  EXPECT_EQ(label.content().watts, "6 W");
}

TEST_F(MenuBarLabelTest, AnEqualLabelIsNotShownAgain) {
  const auto label = this->label();
  take(5.1);
  const auto count = shown.size();
  take(5.2);
  EXPECT_EQ(shown.size(), count);
  take(6.9);
  EXPECT_EQ(shown.size(), count + 1);
}

TEST_F(MenuBarLabelTest, AWarmFlameFlickersFiveTimesASecond) {
  const auto label = this->label();
  take(12);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::warm, 0}));
  world.scheduler.advance(0.19);
  EXPECT_EQ(label.flameFrame(), 0);
  world.scheduler.advance(0.02);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::warm, 1}));
  world.scheduler.advance(0.6);
  EXPECT_EQ(label.flameFrame(), 0) << "after the fourth frame comes the first";
}

TEST_F(MenuBarLabelTest, AHotFlameFlickersNineTimesASecond) {
  const auto label = this->label();
  take(20);
  world.scheduler.advance(0.12);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::hot, 1}));
}

TEST_F(MenuBarLabelTest, AValueAtTheHotThresholdTakesTheShortPause) {
  EXPECT_EQ(MenuBarLabel::flickerPause(18, 18), 0.11);
  EXPECT_EQ(MenuBarLabel::flickerPause(17.99, 18), 0.2);
  EXPECT_EQ(MenuBarLabel::flickerPause(0, 18), 0.2);
}

TEST_F(MenuBarLabelTest, TurningTheAnimationOffStopsItAndShowsTheStillFlame) {
  auto label = this->label();
  take(12);
  world.scheduler.advance(0.21);
  world.defaults.set(kAnimate, false);
  label.refresh();
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::warm, {}}));
  world.scheduler.advance(1);
  EXPECT_EQ(label.flameFrame(), 1);
}

TEST_F(MenuBarLabelTest, ASettingThatIsTurnedOffUnseenEndsTheLoopAtItsNextRound) {
  auto label = this->label();
  take(12);
  world.defaults.set(kAnimate, false);
  world.scheduler.advance(0.21);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::warm, {}}));
  const int frame = label.flameFrame();
  world.scheduler.advance(1);
  EXPECT_EQ(label.flameFrame(), frame);
}

TEST_F(MenuBarLabelTest, WithReducedMotionTheFlameIsStillButKeepsItsColour) {
  reducesMotion = true;
  const auto label = this->label();
  take(12);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::warm, {}}));
  take(20);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::hot, {}}));
}

TEST_F(MenuBarLabelTest, ALevelThatFallsToCalmEndsTheLoopAtTheOutline) {
  const auto label = this->label();
  take(12);
  world.scheduler.advance(0.21);
  take(3);
  EXPECT_EQ(label.content().flame, (MenuBarIcon::Image{LoadLevel::calm, {}}));
  const int frame = label.flameFrame();
  world.scheduler.advance(1);
  EXPECT_EQ(label.flameFrame(), frame);
  take(12);
  EXPECT_EQ(label.content().flame.frame, frame) << "it goes on where it stood";
}

TEST_F(MenuBarLabelTest, ACalmFlameAsksForNoTime) {
  take(3);
  const auto timers = world.scheduler.timersWaiting();
  const auto label = this->label();
  EXPECT_EQ(world.scheduler.timersWaiting(), timers);
}

TEST_F(MenuBarLabelTest, DoesNotCountAsASurface) {
  const auto label = this->label();
  EXPECT_EQ(*world.model().visibleSurfaces(), 0);
}

}  // namespace
}  // namespace embrix
