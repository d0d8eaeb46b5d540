#include "surfaces/spring.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "surfaces/spring_curve.h"

namespace embrix {
namespace {

using std::numbers::pi;

// At a response of 2π the frequency is 1, and the textbook formulas can be read off.
constexpr double kOne = 2 * pi;

TEST(SpringTest, CriticallyDampedFollowsOnePlusTimeTimesDecay) {
  const SpringMotion motion({kOne, 1}, 0, 1);
  for (const double t : {0.0, 0.5, 1.0, 3.0, 8.0}) {
    EXPECT_NEAR(motion.valueAt(t), 1 - (1 + t) * std::exp(-t), 1e-12) << t;
    EXPECT_NEAR(motion.velocityAt(t), t * std::exp(-t), 1e-12) << t;
  }
}

TEST(SpringTest, UnderDampedSwingsOverByWhatTheTextbookSays) {
  const SpringMotion motion({kOne, 0.6}, 0, 1);
  // The first peak stands at π over the damped frequency, e^(-ζπ/√(1-ζ²)) above the target.
  EXPECT_NEAR(motion.valueAt(pi / 0.8), 1 + std::exp(-0.6 * pi / 0.8), 1e-12);
  EXPECT_NEAR(motion.velocityAt(pi / 0.8), 0, 1e-12);
}

TEST(SpringTest, OverDampedIsTheSumOfAFastAndASlowDecay) {
  // ζ = 1.25 has the roots -0.5 and -2.
  const SpringMotion motion({kOne, 1.25}, 0, 1);
  for (const double t : {0.25, 1.0, 4.0}) {
    const double expected = 1 - (4 * std::exp(-0.5 * t) - std::exp(-2 * t)) / 3;
    EXPECT_NEAR(motion.valueAt(t), expected, 1e-12) << t;
  }
}

TEST(SpringTest, TheThreeFormsMeetAtCriticalDamping) {
  const SpringMotion below({1, 1 - 1e-5}, 2, 5, 3);
  const SpringMotion at({1, 1}, 2, 5, 3);
  const SpringMotion above({1, 1 + 1e-5}, 2, 5, 3);
  for (const double t : {0.05, 0.3, 1.0}) {
    EXPECT_NEAR(below.valueAt(t), at.valueAt(t), 1e-3);
    EXPECT_NEAR(above.valueAt(t), at.valueAt(t), 1e-3);
  }
}

TEST(SpringTest, StartsWhereAndAsFastAsItIsTold) {
  for (const double damping : {0.42, 0.8, 1.0, 1.5}) {
    const SpringMotion motion({0.3, damping}, 7, -2, 30);
    EXPECT_DOUBLE_EQ(motion.valueAt(0), 7) << damping;
    EXPECT_DOUBLE_EQ(motion.velocityAt(0), 30) << damping;
    EXPECT_DOUBLE_EQ(motion.valueAt(-1), 7) << "before its start";
  }
}

TEST(SpringTest, TheVelocityIsTheSlopeOfTheValue) {
  for (const double damping : {0.42, 1.0, 1.5}) {
    const SpringMotion motion({0.45, damping}, 0, 1, 2);
    for (double t = 0.01; t < 1; t += 0.07) {
      const double slope = (motion.valueAt(t + 1e-6) - motion.valueAt(t - 1e-6)) / 2e-6;
      EXPECT_NEAR(motion.velocityAt(t), slope, 1e-4) << damping << " at " << t;
    }
  }
}

TEST(SpringTest, StaysWithinTheToleranceOnceSettled) {
  for (const double damping : {0.42, 0.55, 0.85, 1.0, 2.0}) {
    const Spring spring{0.45, damping};
    const SpringMotion motion(spring, 0, 100, -40);
    const double settled = motion.settlingTime(0.5);
    for (double t = settled; t < settled + 3; t += 0.01) {
      EXPECT_LE(std::abs(motion.valueAt(t) - 100), 0.5) << damping;
    }
    double last = 0;
    for (double t = 0; t < settled + 1; t += 0.001) {
      if (std::abs(motion.valueAt(t) - 100) > 0.5) last = t;
    }
    EXPECT_LE(settled - last, spring.response) << "settled long before it is said so";
  }
}

TEST(SpringTest, WhatStandsAtItsTargetIsSettled) {
  EXPECT_EQ(SpringMotion({0.5, 0.8}, 3, 3).settlingTime(0.001), 0);
  EXPECT_GT(SpringMotion({0.5, 0.8}, 3, 3, 10).settlingTime(0.001), 0);
}

TEST(SpringTest, WithoutAResponseThereIsNoWay) {
  const SpringMotion motion({0, 0.8}, 0, 1);
  EXPECT_EQ(motion.valueAt(0), 1);
  EXPECT_EQ(motion.settlingTime(0.001), 0);
}

TEST(SpringTest, WithoutAnyBrakeItStillComesToRest) {
  EXPECT_LT(SpringMotion({0.3, 0}, 0, 1).settlingTime(0.001), 60);
  EXPECT_LT(SpringMotion({0.3, -1}, 0, 1).settlingTime(0.001), 60);
}

TEST(SpringTest, ADurationAndABounceAreAResponseAndADamping) {
  EXPECT_EQ(Spring::ofDuration(0.5, 0), (Spring{0.5, 1}));
  EXPECT_EQ(Spring::ofDuration(0.5, 0.25), (Spring{0.5, 0.75}));
}

// The value of a curve's piece at a part of the duration.
double valueOn(const SpringCurve& curve, double x) {
  Point from;
  for (const SpringCurve::Piece& piece : curve.pieces) {
    if (x <= piece.to.x) {
      const double u = (x - from.x) / (piece.to.x - from.x);  // the control points stand in thirds
      const double v = 1 - u;
      return v * v * v * from.y + 3 * v * v * u * piece.control1.y +
             3 * v * u * u * piece.control2.y + u * u * u * piece.to.y;
    }
    from = piece.to;
  }
  return 1;
}

TEST(SpringCurveTest, FollowsTheSpring) {
  for (const Spring spring : {Spring{0.45, 0.8}, Spring{0.3, 0.42}, Spring{1, 1}}) {
    const SpringCurve curve = SpringCurve::of(spring);
    const SpringMotion motion(spring, 0, 1);
    for (double x = 0; x < 1; x += 0.003) {
      EXPECT_NEAR(valueOn(curve, x), motion.valueAt(x * curve.duration), 2e-3);
    }
  }
}

TEST(SpringCurveTest, RunsForwardFromNothingToTheWholeWay) {
  const SpringCurve curve = SpringCurve::of({0.45, 0.8});
  double last = 0;
  for (const SpringCurve::Piece& piece : curve.pieces) {
    EXPECT_LT(last, piece.control1.x);
    EXPECT_LT(piece.control1.x, piece.control2.x);
    EXPECT_LT(piece.control2.x, piece.to.x);
    last = piece.to.x;
  }
  EXPECT_EQ(curve.pieces.back().to, (Point{1, 1}));
  EXPECT_EQ(curve.pieces.size(), 10u) << "toolkits have no room for more";
  EXPECT_TRUE(SpringCurve::of({0, 1}).pieces.empty());
}

}  // namespace
}  // namespace embrix
