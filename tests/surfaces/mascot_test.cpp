#include "surfaces/mascot.h"

#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

namespace embrix {
namespace {

using Mood = Mascot::Mood;
using Reaction = Mascot::Reaction;

constexpr double kNow = 1000;
constexpr double kClose = 1e-9;

TEST(MascotTest, TwoSlowClicksGiggleAndAThirdSoonAfterWinks) {
  Mascot mascot(Mood::happy);
  mascot.tap(kNow);
  EXPECT_EQ(mascot.reaction(), Reaction::giggle);
  mascot.tap(kNow + 1.3);
  EXPECT_EQ(mascot.reaction(), Reaction::giggle);
  mascot.tap(kNow + 2.0);
  EXPECT_EQ(mascot.reaction(), Reaction::wink);
}

TEST(MascotTest, AClickExactly1Point2SecondsOldIsForgotten) {
  Mascot mascot(Mood::happy);
  mascot.tap(kNow);
  mascot.tap(kNow + 1.2);
  EXPECT_EQ(mascot.reaction(), Reaction::giggle);
}

TEST(MascotTest, TheFourthClickAfterASurpriseStartsAgain) {
  Mascot mascot(Mood::happy);
  EXPECT_FALSE(mascot.reaction());
  const Reaction expected[] = {Reaction::giggle, Reaction::wink, Reaction::surprise,
                               Reaction::giggle};
  double time = kNow;
  for (const Reaction reaction : expected) {
    mascot.tap(time);
    EXPECT_EQ(mascot.reaction(), reaction);
    time += 0.2;
  }
}

TEST(MascotTest, FallsAsleepTenMinutesAfterTheLastInput) {
  const Mascot mascot(Mood::happy);
  EXPECT_EQ(mascot.features(kNow, {.idle = 599}).zzz, 0);
  EXPECT_EQ(mascot.features(kNow, {.idle = 600}).zzz, 0);
  EXPECT_NEAR(mascot.features(kNow, {.idle = 601.25}).zzz, 0.5, kClose);
  EXPECT_NEAR(mascot.features(kNow, {.idle = 601.25}).eyeRY, 7 * 0.65, kClose);
  EXPECT_EQ(mascot.features(kNow, {.idle = 602.5}).zzz, 1);
  EXPECT_EQ(mascot.features(kNow, {}).zzz, 0) << "nobody knows";
}

TEST(MascotTest, NeitherAStressedNorASteamingOneDozes) {
  EXPECT_EQ(Mascot(Mood::stressed).features(kNow, {.idle = 5000}).zzz, 0);
  EXPECT_EQ(Mascot(Mood::happy).features(kNow, {.idle = 5000, .steaming = true}).zzz, 0);
  EXPECT_EQ(Mascot(Mood::sweaty).features(kNow, {.idle = 5000}).zzz, 1);
}

TEST(MascotTest, APointerOnTheCenterIsNotLookedAt) {
  const Mascot mascot(Mood::happy);
  EXPECT_EQ(mascot.pose(kNow, {.gaze = Point{0, 0}}).look, (Point{0, 0}));
}

TEST(MascotTest, ThePupilsFollowThePointerUpToTheirLimit) {
  const Mascot mascot(Mood::happy);
  const auto look = [&](Point gaze) { return mascot.pose(kNow, {.gaze = gaze}).look; };
  EXPECT_NEAR(look({140, 0}).x, 3, kClose);
  EXPECT_NEAR(look({9000, 0}).x, 3, kClose);
  EXPECT_NEAR(look({0, -140}).y, -2.5, kClose);
  EXPECT_NEAR(look({70, 0}).x, 1.5, kClose);
  EXPECT_NEAR(look({0.5, 0}).x, 0.5 * 3 / 140, kClose) << "nearer than a point";
  EXPECT_EQ(mascot.pose(kNow, {}).look, (Point{0, 0}));
}

TEST(MascotTest, TheEyesWidenInAQuarterOfASecondUnderThePointer) {
  Mascot mascot(Mood::happy);
  mascot.setHovering(true, kNow);
  EXPECT_NEAR(mascot.pose(kNow, {}).eyeScale, 1, kClose);
  EXPECT_NEAR(mascot.pose(kNow + 0.125, {}).eyeScale, 1.09, kClose);
  mascot.setHovering(true, kNow + 0.2);  // it has been there all along
  EXPECT_NEAR(mascot.pose(kNow + 5, {}).eyeScale, 1.18, kClose);
  mascot.setHovering(false, kNow + 6);
  EXPECT_EQ(mascot.pose(kNow + 6, {}).eyeScale, 1);
}

TEST(MascotTest, AMoodBlendsInWithAHop) {
  Mascot mascot(Mood::happy);
  mascot.setMood(Mood::stressed, kNow);
  EXPECT_EQ(mascot.features(kNow, {}), Mascot::Features::of(Mood::happy));
  EXPECT_NEAR(mascot.features(kNow + 0.35, {}).brows, 0.5, kClose);
  // A quarter of the way is 5/32 of the smoothed one.
  EXPECT_NEAR(mascot.features(kNow + 0.175, {}).brows, 0.15625, kClose);
  EXPECT_EQ(mascot.features(kNow + 0.8, {}), Mascot::Features::of(Mood::stressed));

  const double still = Mascot::Pose::of(Mood::stressed, kNow + 0.225).dy;
  EXPECT_NEAR(mascot.pose(kNow + 0.225, {}).dy, still - 6, kClose);
  EXPECT_NEAR(mascot.pose(kNow + 0.46, {}).dy, Mascot::Pose::of(Mood::stressed, kNow + 0.46).dy,
              kClose);
}

TEST(MascotTest, TheSameMoodAgainIsNoChange) {
  Mascot mascot(Mood::happy);
  mascot.setMood(Mood::happy, kNow);
  EXPECT_EQ(mascot.pose(kNow + 0.225, {}).dy, Mascot::Pose::of(Mood::happy, kNow + 0.225).dy);
}

TEST(MascotTest, ReliefHopsAndShowsForTwoSeconds) {
  const Mascot mascot(Mood::happy);
  const Mascot::Surroundings freed{.relief = kNow};
  const double still = Mascot::Pose::of(Mood::happy, kNow + 0.25).dy;
  EXPECT_NEAR(mascot.pose(kNow + 0.25, freed).dy, still - 7, kClose);
  EXPECT_NEAR(mascot.features(kNow + 0.09, freed).happyEyes, 0.5, kClose);
  EXPECT_NEAR(mascot.features(kNow + 0.18, freed).happyEyes, 1, kClose);
  EXPECT_NEAR(mascot.features(kNow + 0.18 + 1.01, freed).happyEyes, 0.5, kClose);
  EXPECT_EQ(mascot.features(kNow + 2.3, freed), Mascot::Features::of(Mood::happy));
  EXPECT_EQ(mascot.features(kNow - 1, freed), Mascot::Features::of(Mood::happy));
}

TEST(MascotTest, AReactionShowsOnTheFaceAndInTheBody) {
  Mascot mascot(Mood::happy);
  mascot.tap(kNow);
  EXPECT_NEAR(mascot.features(kNow + 0.18, {}).happyEyes, 1, kClose);
  EXPECT_NEAR(mascot.features(kNow + 0.54, {}).happyEyes, 0.5, kClose);
  EXPECT_EQ(mascot.features(kNow + 1, {}).happyEyes, 0);
  const double still = Mascot::Pose::of(Mood::happy, kNow + 0.25).squash;
  EXPECT_NEAR(mascot.pose(kNow + 0.25, {}).squash, still + 0.07, kClose);

  mascot.tap(kNow + 0.2);
  EXPECT_NEAR(mascot.features(kNow + 0.29, {}).wink, 0.5, kClose);
  EXPECT_EQ(mascot.features(kNow + 0.29, {}).happyEyes, 0);
  mascot.tap(kNow + 0.4);
  EXPECT_NEAR(mascot.features(kNow + 0.58, {}).surprise, 1, kClose);
  EXPECT_NEAR(mascot.pose(kNow + 0.65, {}).squash,
              Mascot::Pose::of(Mood::happy, kNow + 0.65).squash - 0.08, kClose);
}

TEST(MascotTest, ASeedSetsItsClockApart) {
  EXPECT_EQ(Mascot(Mood::happy, 1.5).pose(kNow, {}).eyes,
            Mascot(Mood::happy).pose(kNow + 1.5, {}).eyes);
  EXPECT_EQ(Mascot(Mood::happy, 1.5).pose(kNow, {}).time, kNow + 1.5);
}

TEST(MascotTest, AClockThatIsPutBackLeavesNothingHanging) {
  Mascot mascot(Mood::happy);
  mascot.setMood(Mood::sweaty, kNow);
  mascot.setHovering(true, kNow);
  mascot.tap(kNow);
  const double hourBefore = kNow - 3600;
  EXPECT_EQ(mascot.features(hourBefore, {}), Mascot::Features::of(Mood::sweaty));
  const auto pose = mascot.pose(hourBefore, {});
  EXPECT_NEAR(pose.eyeScale, 1.18, kClose);
  EXPECT_NEAR(pose.dy, Mascot::Pose::of(Mood::sweaty, hourBefore).dy, kClose);
  EXPECT_GT(mascot.untilNextFrame(hourBefore, {}), 0.04) << "nothing quick is on";
  mascot.tap(hourBefore);
  EXPECT_EQ(mascot.reaction(), Reaction::giggle) << "the click before is long gone";
}

TEST(MascotTest, SteamIsInThePose) {
  EXPECT_EQ(Mascot(Mood::stressed).pose(kNow, {.steaming = true}).steam, 1);
  EXPECT_EQ(Mascot(Mood::stressed).pose(kNow, {}).steam, 0);
}

TEST(MascotTest, DrawsOftenOnlyWhileSomethingQuickIsOn) {
  // At 1000 seconds no eye closes: 232 cycles and 2.4 seconds.
  Mascot mascot(Mood::happy);
  EXPECT_GT(mascot.untilNextFrame(kNow, {}), 0.04);
  mascot.tap(kNow);
  EXPECT_LT(mascot.untilNextFrame(kNow + 0.1, {}), 0.02);
  EXPECT_GT(mascot.untilNextFrame(kNow + 1, {}), 0.04);
  mascot.setMood(Mood::sweaty, kNow + 1);
  EXPECT_LT(mascot.untilNextFrame(kNow + 1.1, {}), 0.02);
  EXPECT_LT(mascot.untilNextFrame(kNow + 1.9 - 0.35, {}), 0.04) << "the eyes close";
}

// Every slow frame that is left out shows what the one before it shows, but for half a point.
TEST(MascotTest, ABreathIsDrawnWhenItHasMoved) {
  for (const Mood mood : {Mood::happy, Mood::sweaty, Mood::relieved}) {
    for (const double scale : {0.4, 0.87, 2.0}) {
      const Mascot mascot(mood);
      int frames = 0;
      for (double t = kNow; t < kNow + 60; ++frames) {
        const double until = mascot.untilNextFrame(t, {}, scale);
        const auto drawn = mascot.pose(t, {});
        const double grid = std::ceil((t + 0.017) * 20) / 20;
        for (double skipped = grid; skipped < t + until - 0.01; skipped += 0.05) {
          ASSERT_LT(drawn.distanceTo(mascot.pose(skipped, {})) * scale, 0.5) << t;
        }
        ASSERT_LE(until, 0.32);
        t += until;
      }
      EXPECT_LE(frames / 60.0, 4 + 12 * std::max(scale, 0.5)) << static_cast<int>(mood) << scale;
    }
  }
}

TEST(MascotTest, TheSmallerTheFigureTheFewerItsFrames) {
  const auto frames = [](double scale) {
    const Mascot mascot(Mood::happy);
    int count = 0;
    for (double t = kNow; t < kNow + 60; ++count) t += mascot.untilNextFrame(t, {}, scale);
    return count;
  };
  EXPECT_LT(frames(0.4), frames(0.87));
  EXPECT_LT(frames(0.87), frames(2));
}

TEST(MascotTest, AFigureThatDoesNotBreatheWaitsForItsBlink) {
  const Mascot logo(Mood::logo);
  const double cycles = std::floor(kNow / 4.3) * 4.3;
  EXPECT_NEAR(logo.untilNextFrame(kNow, {}), cycles + 3.81 - kNow, 1e-6);
  EXPECT_NEAR(logo.untilNextFrame(kNow, {.idle = 599.5}), 0.5, 1e-6) << "or until it falls asleep";
}

TEST(MascotTest, AlwaysWaitsForSomething) {
  for (const Mood mood : kMascotMoods) {
    for (double t = 0; t < 30; t += 0.0173) {
      EXPECT_GE(Mascot(mood).untilNextFrame(t, {.idle = t * 40}), 1.0 / 61) << t;
    }
  }
}

TEST(MascotTest, SlowFramesOfAllFiguresFallOnTheSameMoments) {
  struct Case {
    const char* label;
    double now;
    double expected;
  };
  const Case cases[] = {
      {"on such a moment", 1000, 0.05},
      {"a little late", 1000.004, 0.046},
      {"between two", 1000.02, 0.03},
      {"just far enough before", 1000.033, 0.017},
      {"too near before", 1000.04, 1.0 / 60},
      {"after that one", 1000.04 + 1.0 / 60, 0.05 - 0.01 + 1.0 / 300},
      {"woken a little early", 999.999, 0.05},
      {"of a wall clock in milliseconds", 827366400.123, 0.027},
      {"before the clock began", -0.03, 0.03},
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(Mascot::untilSlowFrame(c.now), c.expected, 1e-6) << c.label;
  }
}

TEST(MascotTest, ASlowFrameIsNeitherSoonerThanADisplaysNorLaterThanItsOwn) {
  for (double now = 0; now < 2; now += 0.00037) {
    const double until = Mascot::untilSlowFrame(now);
    EXPECT_GE(until, 1.0 / 60) << now;
    EXPECT_LE(until, 1.0 / 20) << now;
  }
}

TEST(MascotTest, FiguresThatBeganAtAnyTimeAreInStepAfterTwoFrames) {
  for (double begin = 0; begin < 0.2; begin += 0.00037) {
    double now = begin;
    for (int frame = 0; frame < 2; ++frame) now += Mascot::untilSlowFrame(now);
    const double places = now * 20;
    // Within what a timer may be early by.
    EXPECT_NEAR(places, std::round(places), 0.002 * 20 + kClose) << begin;
  }
}

TEST(MascotTest, BreathingFiguresAskForMomentsOfTheSameGrid) {
  for (const auto& [mood, seed, scale] :
       {std::tuple(Mood::happy, 0.0, 0.87), std::tuple(Mood::relieved, 0.5, 0.4)}) {
    const Mascot mascot(mood, seed);
    for (double begin = kNow; begin < kNow + 0.05; begin += 0.0037) {
      const double now = begin + mascot.untilNextFrame(begin, {}, scale);
      EXPECT_NEAR(now * 20, std::round(now * 20), 1e-6) << begin;
    }
  }
}

}  // namespace
}  // namespace embrix
