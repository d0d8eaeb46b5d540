#include "surfaces/path.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

void expectNear(Point actual, Point expected) {
  EXPECT_NEAR(actual.x, expected.x, 1e-9);
  EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

TEST(TransformTest, WhatComesAfterSeesWhatWasMovedFirst) {
  const Transform both = Transform::scaling(2, 3).after(Transform::translation(1, 1));
  expectNear(both({1, 1}), {4, 6});
}

TEST(TransformTest, AScaleLeavesItsCenterWhereItIs) {
  const Transform scale = Transform::scaling(2, 0.5, {60, 112});
  expectNear(scale({60, 112}), {60, 112});
  expectNear(scale({61, 110}), {62, 111});
}

TEST(TransformTest, ARotationTurnsClockwiseAboutItsCenter) {
  const Transform turn = Transform::rotation(90, {10, 10});
  expectNear(turn({10, 10}), {10, 10});
  expectNear(turn({12, 10}), {10, 12});
}

TEST(PathTest, AQuadraticCurveRunsThroughTheMiddleOfItsControls) {
  Path path;
  path.moveTo({0, 0}).quadTo({10, 20}, {20, 0});
  // At the half of a quadratic curve: a quarter of both ends and a half of the control point.
  expectNear(path.trimmed(0.5).elements().back().to, {10, 10});
}

TEST(PathTest, ATrimmedPathEndsAmidItsPieces) {
  Path path;
  path.addLines({{0, 0}, {10, 0}, {10, 20}});
  expectNear(path.trimmed(0.75).elements().back().to, {10, 10});
  EXPECT_EQ(path.trimmed(1), path);
  EXPECT_EQ(path.trimmed(0).elements().size(), 1u);
}

TEST(PathTest, ACornerIsNeverRoundedByMoreThanHalfASide) {
  Path pill;
  pill.addRoundedRect({0, 0, 40, 10}, 100);
  EXPECT_EQ(pill.bounds(), (Rect{0, 0, 40, 10}));
  expectNear(pill.elements().front().to, {5, 0});
}

TEST(PathTest, AClosedPieceEndsWhereItBegan) {
  Path path;
  path.moveTo({3, 4}).lineTo({8, 9}).close();
  expectNear(path.elements().back().to, {3, 4});
  EXPECT_TRUE(Path().close().isEmpty());
}

}  // namespace
}  // namespace embrix
