#include "surfaces/hero_content.h"

#include <gtest/gtest.h>

#include "worlds/popover_world.h"

namespace embrix {
namespace {

// At 4 performance cores 10 W are warm and 18 W are hot.
class HeroContentTest : public testing::Test {
 protected:
  HeroContentTest() {
    world.defaults.set(SettingKeys::kAutomaticHeat, true);
    world.start();
  }

  HeroContent take(Frame frame) {
    world.take(std::move(frame));
    return HeroContent::of(world.model());
  }
  Frame frame(std::vector<AppGroup> groups = {}) {
    return frameAt(world.scheduler.wall, std::move(groups));
  }

  ModelWorld world;
};

TEST_F(HeroContentTest, WithoutAFrameItShowsNoWattsAndNoButton) {
  const HeroContent hero = HeroContent::of(world.model());
  EXPECT_EQ(hero.eyebrow, "Right now");
  EXPECT_EQ(HeroContent::figure(hero.watts), "0");
  EXPECT_FALSE(hero.culprit);
  EXPECT_EQ(hero.fill, EX::Hue::mint);
  EXPECT_EQ(hero.mood, MascotMood::happy);
  EXPECT_EQ(hero.status, "Chilling");
}

TEST_F(HeroContentTest, FillMoodAndSteamFollowTheLevel) {
  struct Case {
    double watts;
    EX::Hue fill;
    MascotMood mood;
    bool isHot;
  };
  for (const Case& c : {Case{5, EX::Hue::mint, MascotMood::happy, false},
                        Case{10, EX::Hue::yellow, MascotMood::sweaty, false},
                        Case{18, EX::Hue::coral, MascotMood::stressed, true}}) {
    const HeroContent hero = take(frame({app("Xcode", c.watts)}));
    EXPECT_EQ(hero.fill, c.fill) << c.watts;
    EXPECT_EQ(hero.mood, c.mood) << c.watts;
    EXPECT_EQ(hero.isHot, c.isHot) << c.watts;
  }
}

TEST_F(HeroContentTest, AThrottledMachineIsCoralAndStressedAtAnyLevel) {
  for (const ThermalState state : {ThermalState::serious, ThermalState::critical}) {
    Frame calm = frame({app("Xcode", 2)});
    calm.thermalState = state;
    calm.temperature = 91.4;
    const HeroContent hero = take(calm);
    EXPECT_EQ(hero.fill, EX::Hue::coral);
    EXPECT_EQ(hero.mood, MascotMood::stressed);
    EXPECT_TRUE(hero.isHot);
    EXPECT_EQ(hero.status, "Throttling at 91°C");
  }
  Frame fair = frame({app("Xcode", 2)});
  fair.thermalState = ThermalState::fair;
  EXPECT_EQ(take(fair).fill, EX::Hue::mint);
}

TEST_F(HeroContentTest, TheFigureHasADecimalBelowTenWatts) {
  struct Case {
    double watts;
    const char* text;
  };
  for (const Case& c : {Case{0, "0"}, Case{0.04, "0"}, Case{0.05, "0.1"}, Case{7.44, "7.4"},
                        Case{9.96, "10.0"}, Case{10, "10"}, Case{127.6, "128"}, Case{-3, "0"},
                        Case{std::numeric_limits<double>::quiet_NaN(), "0"}}) {
    EXPECT_EQ(HeroContent::figure(c.watts), c.text);
  }
}

TEST_F(HeroContentTest, OffersToCalmTheCulpritByItsFriendlyName) {
  const HeroContent hero =
      take(frame({group("code", "Code", {row(7, "com.example.Compiler", 8)})}));
  ASSERT_TRUE(hero.culprit);
  EXPECT_EQ(hero.culprit->label, "Calm Compiler");
  EXPECT_EQ(hero.culprit->help, "Keep it running, slower and cooler, on the efficiency cores");
  EXPECT_FALSE(hero.culprit->isCalmed);
  EXPECT_EQ(labelsOf(hero.culprit->menu),
            (std::vector<std::string>{"Quit Compiler", "Auto-Calm Code"}));
  EXPECT_EQ(hero.explanation, "Compiler in Code is doing most of the work.");
}

TEST_F(HeroContentTest, ACalmedCulpritCanBeRestored) {
  const Frame busy = frame({app("Xcode", 8)});
  take(busy);
  world.bringToLife(busy);
  world.model().calm(world.model().targetsInGroup("Xcode.app"));
  const HeroContent hero = HeroContent::of(world.model());
  ASSERT_TRUE(hero.culprit);
  EXPECT_EQ(hero.culprit->label, "Restore Xcode");
  EXPECT_EQ(hero.culprit->help, "Give it full speed again");
  EXPECT_TRUE(hero.culprit->isCalmed);
}

TEST_F(HeroContentTest, OffersNothingWhileNobodyWorksHard) {
  EXPECT_FALSE(take(frame({app("Xcode", 1.4)})).culprit);
}

TEST_F(HeroContentTest, OffersNothingForAnotherUsersCulprit) {
  EXPECT_FALSE(take(frame({group("index", "Index", {row(7, "indexer", 8, kRoot)})})).culprit);
  // One copy of another user among our own is enough.
  EXPECT_FALSE(
      take(frame({group("index", "Index", {row(7, "indexer", 8), row(8, "indexer", 1, kRoot)})}))
          .culprit);
}

TEST_F(HeroContentTest, TheSystemHasNoRuleOfItsOwn) {
  const HeroContent hero = take(frame({group("system", "System", {row(7, "indexer", 8)})}));
  ASSERT_TRUE(hero.culprit);
  EXPECT_EQ(labelsOf(hero.culprit->menu), (std::vector<std::string>{"Quit indexer"}));
}

TEST_F(HeroContentTest, TheRuleMenuTicksTheConditionThatHolds) {
  world.model().addCalmRule("Xcode", CalmRule::Condition::whenHot);
  const HeroContent hero = take(frame({app("Xcode", 8)}));
  ASSERT_TRUE(hero.culprit);
  const MenuItem& rules = hero.culprit->menu.at(1);
  EXPECT_EQ(labelsOf(rules.items), (std::vector<std::string>{"On battery", "When hot", "Always"}));
  EXPECT_EQ(rules.items[0].isOn, false);
  EXPECT_EQ(rules.items[1].isOn, true);
  EXPECT_EQ(rules.items[2].isOn, false);
}

TEST_F(HeroContentTest, ReliefIsWhenMemoryWasFreed) {
  take(frameWithForgotten(world.scheduler.wall, 1));
  EXPECT_FALSE(HeroContent::of(world.model()).relief);
  world.model().stop(world.model().forgottenRows().front());
  EXPECT_EQ(HeroContent::of(world.model()).relief, world.scheduler.wall);
}

TEST_F(HeroContentTest, NothingFreedIsNoRelief) {
  take(frame());
  world.model().stopAllForgotten();
  EXPECT_FALSE(HeroContent::of(world.model()).relief);
}

}  // namespace
}  // namespace embrix
