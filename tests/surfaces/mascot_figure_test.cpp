#include "surfaces/mascot_figure.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "surfaces/palette.h"

namespace embrix {
namespace {

using Mood = MascotMood;

Picture figure(const MascotFeatures& features, const MascotPose& pose = {}) {
  return MascotFigure::draw(1, 4, features, pose);
}

// The box around a shape's points as they are drawn.
Rect placed(const Shape& shape) {
  return Path().addPath(shape.path, shape.transform).bounds();
}

const Shape& body(const Picture& picture) {
  return *std::find_if(picture.shapes.begin(), picture.shapes.end(),
                       [](const Shape& shape) { return shape.path == MascotFigure::face(); });
}

std::size_t shapesWithin(const Picture& picture, Rect box) {
  return static_cast<std::size_t>(
      std::count_if(picture.shapes.begin(), picture.shapes.end(), [&](const Shape& shape) {
        const Rect at = placed(shape);
        return at.x >= box.x && at.y >= box.y && at.x + at.width <= box.x + box.width &&
               at.y + at.height <= box.y + box.height;
      }));
}

TEST(MascotFigureTest, TheBodyIsFilledAndOutlined) {
  const Picture picture = figure(MascotFeatures::of(Mood::stressed));
  EXPECT_EQ(body(picture).fill, (Color{1, 0.831, 0.322, 1}));
  const Rect box = MascotFigure::face().bounds();
  EXPECT_EQ(box.x, 12);
  EXPECT_EQ(box.y, 16);
  EXPECT_EQ(box.x + box.width, 108);
  EXPECT_EQ(box.y + box.height, 112);
}

TEST(MascotFigureTest, TheFootOfTheFigureStaysWhileItBreathes) {
  const Picture picture =
      figure(MascotFeatures::of(Mood::happy), {.squash = 0.1, .tilt = 3, .time = 0});
  const Point foot = body(picture).transform({60, 112});
  EXPECT_NEAR(foot.x, 60, 1e-9);
  EXPECT_NEAR(foot.y, 112, 1e-9);
  // Wider and flatter: the top comes down by a tenth of its height.
  const Picture flat = figure(MascotFeatures::of(Mood::happy), {.squash = 0.1});
  EXPECT_NEAR(body(flat).transform({60, 16}).y, 112 - 96 * 0.9, 1e-9);
}

TEST(MascotFigureTest, ShiftsAndTheScaleMoveTheBody) {
  const Picture picture =
      MascotFigure::draw(2, 4, MascotFeatures::of(Mood::happy), {.dy = -6, .shake = 2});
  const Point foot = body(picture).transform({60, 112});
  EXPECT_NEAR(foot.x, 124, 1e-9);
  EXPECT_NEAR(foot.y, 212, 1e-9);
}

TEST(MascotFigureTest, OpenEyesAreEllipsesThatCloseAndLook) {
  // Without glints, so that only the eyes lie there.
  const MascotFeatures face = MascotFeatures::of(Mood::stressed);
  const Picture open = figure(face, {.look = {3, -2.5}});
  EXPECT_EQ(shapesWithin(open, {43.9, 50.4, 10.2, 14.2}), 1u) << "the left eye, moved by the look";
  const Picture half = figure(face, {.eyes = 0.5});
  EXPECT_EQ(shapesWithin(half, {68.9, 56.4, 10.2, 7.2}), 1u) << "the right eye, half closed";
}

TEST(MascotFigureTest, GlintsGoWithHalfClosedEyes) {
  const MascotFeatures face = MascotFeatures::of(Mood::happy);
  const auto glints = [&](double openness) {
    const Picture picture = figure(face, {.eyes = openness});
    return std::count_if(picture.shapes.begin(), picture.shapes.end(), [](const Shape& shape) {
      return shape.fill == EX::kWhite && shape.path.bounds().width < 10;
    });
  };
  EXPECT_EQ(glints(1), 2);
  EXPECT_EQ(glints(0.6), 0);
}

TEST(MascotFigureTest, HappyEyesAreArches) {
  Path arch;
  arch.moveTo({40, 58}).quadTo({46, 50}, {52, 58});
  const auto hasArch = [&](const Picture& picture) {
    return std::any_of(picture.shapes.begin(), picture.shapes.end(),
                       [&](const Shape& shape) { return shape.path == arch; });
  };
  MascotFeatures face = MascotFeatures::of(Mood::happy);
  EXPECT_FALSE(hasArch(figure(face)));
  face.happyEyes = 0.5;
  EXPECT_FALSE(hasArch(figure(face)));
  face.happyEyes = 0.51;
  EXPECT_TRUE(hasArch(figure(face)));
  EXPECT_TRUE(hasArch(figure(MascotFeatures::frozen(Mood::happy, MascotFrozenState::wink))))
      << "the left eye winks";
}

TEST(MascotFigureTest, AWinkKeepsTheRightEyeOpen) {
  const Picture picture = figure(MascotFeatures::frozen(Mood::stressed, MascotFrozenState::wink));
  EXPECT_EQ(shapesWithin(picture, {68.9, 52.9, 10.2, 14.2}), 1u);
  EXPECT_EQ(shapesWithin(picture, {40.9, 52.9, 10.2, 14.2}), 0u);
}

TEST(MascotFigureTest, ASurprisedMouthIsRound) {
  const Picture picture = figure(MascotFeatures::frozen(Mood::happy, MascotFrozenState::surprise));
  EXPECT_EQ(shapesWithin(picture, {54.9, 73.9, 10.2, 12.2}), 1u);
  Path smile;
  smile.moveTo({50, 77}).quadTo({60, 86}, {70, 77});
  for (const Shape& shape : picture.shapes) EXPECT_NE(shape.path, smile);
}

TEST(MascotFigureTest, ADropSlidesDownTheTempleAndFades) {
  const MascotFeatures face = MascotFeatures::of(Mood::sweaty);
  const auto drop = [&](double drip) {
    const Picture picture = figure(face, {.drip = drip});
    return *std::find_if(picture.shapes.rbegin(), picture.shapes.rend(),
                         [](const Shape& shape) { return shape.fill.has_value(); });
  };
  EXPECT_NEAR(drop(0.85).transform({0, 0}).y - drop(0).transform({0, 0}).y, 22, 1e-9);
  EXPECT_NEAR(drop(0).fill->opacity, 0.3, 1e-9);
  EXPECT_NEAR(drop(0.85).fill->opacity, 1, 1e-9);
  EXPECT_NEAR(drop(0.925).fill->opacity, 0.5, 1e-9);
  EXPECT_EQ(figure(face).shapes.size() + 2, figure(face, {.drip = 0.5}).shapes.size());
}

TEST(MascotFigureTest, WhatAFaceLacksIsNotDrawn) {
  MascotFeatures bare = MascotFeatures::of(Mood::happy);
  const auto count = figure(bare).shapes.size();
  bare.blush = 0.01;
  EXPECT_EQ(figure(bare).shapes.size(), count - 2);
  bare.tuft = 0.01;
  EXPECT_EQ(figure(bare).shapes.size(), count - 4);
  EXPECT_EQ(figure(MascotFeatures::of(Mood::happy), {.steam = 1}).shapes.size(), count + 2);
}

TEST(MascotFigureTest, SteamSwaysAboveTheHead) {
  for (double time = 0; time < 1.4; time += 0.1) {
    const Picture picture = figure(MascotFeatures::of(Mood::happy), {.steam = 1, .time = time});
    for (const std::size_t wisp : {0u, 1u}) {
      const auto& elements = picture.shapes[wisp].path.elements();
      const double start = wisp == 0 ? 32 : 88;
      EXPECT_EQ(elements.front().to.x, start);
      EXPECT_GE(elements.back().to.x, start - 5);
      EXPECT_LE(elements.back().to.x, start + 5);
      EXPECT_LT(elements.back().to.y, elements.front().to.y);
    }
  }
}

TEST(MascotFigureTest, LettersRiseWhileItSleeps) {
  MascotFeatures face = MascotFeatures::frozen(Mood::happy, MascotFrozenState::dozing);
  const Picture picture = figure(face, {.time = 0.6});
  const auto awake = figure(MascotFeatures::of(Mood::happy)).shapes.size();
  EXPECT_GT(picture.shapes.size(), awake - 2);
  EXPECT_NEAR(placed(picture.shapes[0]).x, 92, 12);
  EXPECT_LT(placed(picture.shapes[0]).y, 26);
  face.zzz = 0.05;
  EXPECT_LT(figure(face, {.time = 0.6}).shapes.size(), picture.shapes.size());
}

TEST(MascotFigureTest, TheLettersOfSleepDoNotTouch) {
  const auto awake = figure(MascotFeatures::of(Mood::happy)).shapes.size();
  const auto face = MascotFeatures::frozen(Mood::happy, MascotFrozenState::dozing);
  for (double time = 0; time < 2.4; time += 0.05) {
    std::vector<Shape> letters = figure(face, {.time = time}).shapes;
    // The sleeping eyes are without their two glints.
    ASSERT_GT(letters.size(), awake - 2);
    letters.resize(letters.size() - (awake - 2));
    std::sort(letters.begin(), letters.end(), [](const Shape& higher, const Shape& lower) {
      return placed(higher).y < placed(lower).y;
    });
    for (std::size_t i = 1; i < letters.size(); ++i) {
      const Rect above = placed(letters[i - 1]);
      EXPECT_GT(placed(letters[i]).y - letters[i].lineWidth, above.y + above.height)
          << "at " << time;
    }
  }
}

TEST(MascotFigureTest, NothingReachesBeyondTheOverhang) {
  for (const Mood mood : kMascotMoods) {
    for (double time = 0; time < 20; time += 0.037) {
      MascotPose pose = MascotPose::of(mood, time);
      pose.steam = 1;
      pose.dy -= 7;
      for (const Shape& shape :
           figure(MascotFeatures::frozen(mood, MascotFrozenState::dozing), pose).shapes) {
        const Rect box = placed(shape);
        const double half = shape.lineWidth / 2;
        EXPECT_GE(box.x - half, -MascotFigure::kOverhang);
        EXPECT_GE(box.y - half, -MascotFigure::kOverhang);
        EXPECT_LE(box.x + box.width + half, 120 + MascotFigure::kOverhang);
        EXPECT_LE(box.y + box.height + half, 120 + MascotFigure::kOverhang);
      }
    }
  }
}

}  // namespace
}  // namespace embrix
