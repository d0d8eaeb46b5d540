#include "surfaces/mascot_pose.h"

#include <cmath>

#include <gtest/gtest.h>

namespace embrix {
namespace {

using Mood = MascotMood;

constexpr double kClose = 1e-9;

TEST(MascotPoseTest, BreathesInAndOutWithin3Point2Seconds) {
  struct Case {
    double time;
    double squash;
    double dy;
  };
  const Case cases[] = {{0, 0, 1.6 * std::sin(0.8)},
                        {0.8, 0.018, 1.6 * std::cos(0.8)},
                        {1.6, 0, -1.6 * std::sin(0.8)},
                        {2.4, -0.018, -1.6 * std::cos(0.8)},
                        {3.2, 0, 1.6 * std::sin(0.8)}};
  for (const Case& c : cases) {
    const auto pose = MascotPose::of(Mood::happy, c.time);
    EXPECT_NEAR(pose.squash, c.squash, kClose) << c.time;
    EXPECT_NEAR(pose.dy, c.dy, kClose) << c.time;
  }
}

TEST(MascotPoseTest, TheTuftSwingsNineDegreesEachWay) {
  EXPECT_NEAR(MascotPose::of(Mood::happy, 0.65).tuft, 9, kClose);
  EXPECT_NEAR(MascotPose::of(Mood::happy, 1.95).tuft, -9, kClose);
}

TEST(MascotPoseTest, BlinksOnceEveryCycleAndTwiceInEveryThird) {
  struct Case {
    const char* label;
    double time;
    double eyes;
  };
  const Case cases[] = {
      {"open", 0, 1},
      {"not yet", 3.81, 1},
      {"half way down", 3.855, 0.5},
      {"closed", 3.9, 0},
      {"half way up", 3.945, 0.5},
      {"between the two", 4.01, 1},
      {"closed again in cycle 0", 4.12, 0},
      {"closed in cycle 1", 4.3 + 3.9, 0},
      {"but once in cycle 1", 4.3 + 4.12, 1},
      {"and once in cycle 2", 8.6 + 4.12, 1},
      {"twice in cycle 3", 12.9 + 4.12, 0},
  };
  for (const Case& c : cases) {
    EXPECT_NEAR(MascotPose::of(Mood::happy, c.time).eyes, c.eyes, 1e-6) << c.label;
  }
}

TEST(MascotPoseTest, ALogoDoesNotBreatheOrSwingButBlinks) {
  for (const double time : {0.3, 0.8, 2.0, 5.7}) {
    const auto pose = MascotPose::of(Mood::logo, time);
    EXPECT_EQ(pose.squash, 0);
    EXPECT_EQ(pose.dy, 0);
    EXPECT_EQ(pose.tuft, 0);
  }
  EXPECT_NEAR(MascotPose::of(Mood::logo, 3.9).eyes, 0, 1e-6);
}

TEST(MascotPoseTest, OnlyTheRelievedOneSways) {
  EXPECT_NEAR(MascotPose::of(Mood::relieved, 1).tilt, 3, kClose);
  EXPECT_NEAR(MascotPose::of(Mood::relieved, 3).tilt, -3, kClose);
  EXPECT_EQ(MascotPose::of(Mood::happy, 1).tilt, 0);
}

TEST(MascotPoseTest, ASweatyOneDripsEvery2Point6Seconds) {
  EXPECT_NEAR(*MascotPose::of(Mood::sweaty, 1.3).drip, 0.5, kClose);
  EXPECT_NEAR(*MascotPose::of(Mood::sweaty, 2.6 + 0.65).drip, 0.25, kClose);
  EXPECT_EQ(MascotPose::of(Mood::sweaty, 0.05).shake, 0);
  EXPECT_FALSE(MascotPose::of(Mood::happy, 1.3).drip);
}

TEST(MascotPoseTest, AStressedOneDripsFasterShiversAndLiftsItsBrows) {
  EXPECT_NEAR(*MascotPose::of(Mood::stressed, 0.8).drip, 0.5, kClose);
  // A quarter of the shiver's ninth of a second in, the sine is 1.
  EXPECT_NEAR(MascotPose::of(Mood::stressed, 1.0 / 36).shake, (1 - (1.0 / 36) / 0.45) * 2.4,
              kClose);
  EXPECT_NEAR(MascotPose::of(Mood::stressed, 3 + 1.0 / 36).shake, 2.4 * (1 - 5.0 / 81), 1e-6);
  EXPECT_EQ(MascotPose::of(Mood::stressed, 0.45).shake, 0);
  EXPECT_EQ(MascotPose::of(Mood::stressed, 2).shake, 0);
  EXPECT_NEAR(MascotPose::of(Mood::stressed, 0.375).brow, 1.6, kClose);
  EXPECT_EQ(MascotPose::of(Mood::stressed, 1.125).brow, 0);
}

TEST(MascotPoseTest, TellsWhenTheNextBlinkBegins) {
  EXPECT_NEAR(MascotPose::nextBlink(0), 3.81, kClose);
  EXPECT_NEAR(MascotPose::nextBlink(3.9), 3.9, kClose) << "it is blinking";
  EXPECT_NEAR(MascotPose::nextBlink(4.0), 4.03, kClose) << "the second of cycle 0";
  EXPECT_NEAR(MascotPose::nextBlink(4.25), 4.3 + 3.81, kClose);
  EXPECT_NEAR(MascotPose::nextBlink(4.3 + 4.0), 8.6 + 3.81, kClose) << "cycle 1 has no second";
  for (double time = 0; time < 30; time += 0.013) {
    const double next = MascotPose::nextBlink(time);
    for (double t = time; t < next - 0.001; t += 0.011) {
      EXPECT_EQ(MascotPose::of(Mood::happy, t).eyes, 1) << t;
    }
  }
}

TEST(MascotPoseTest, NeedsNoEyesOnTheClock) {
  const auto pose = MascotPose::of(Mood::happy, 7);
  EXPECT_EQ(pose.eyeScale, 1);
  EXPECT_EQ(pose.look, Point{});
  EXPECT_EQ(pose.steam, 0);
  EXPECT_EQ(pose.time, 7);
}

}  // namespace
}  // namespace embrix
