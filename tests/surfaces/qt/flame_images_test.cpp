#include "surfaces/qt/flame_images.h"

#include <gtest/gtest.h>

#include <QImage>

#include "surfaces/qt/surface_engine.h"

namespace embrix {
namespace {

MenuBarLabel::Content label(LoadLevel level, std::optional<int> frame = {},
                            std::optional<std::string> watts = {}) {
  return {.flame = {.level = level, .frame = frame}, .watts = std::move(watts)};
}

class FlameImagesTest : public testing::Test {
 protected:
  // How many pixels are more of one colour than of another.
  static int count(const QPixmap& pixmap, const std::function<bool(const QColor&)>& isOne) {
    const QImage image = pixmap.toImage();
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) found += isOne(image.pixelColor(x, y)) ? 1 : 0;
    }
    return found;
  }
  static bool isRed(const QColor& color) {
    return color.alpha() > 200 && color.red() > 200 && color.green() < 100;
  }
  static bool isWhite(const QColor& color) {
    return color.alpha() > 200 && color.lightness() > 200;
  }

  SurfaceEngine engine;  // brings the typefaces
  FlameImages square{FlameImages::Shape::square};
  FlameImages bar{FlameImages::Shape::bar};
};

TEST_F(FlameImagesTest, ACalmFlameIsATemplateAHotOneIsRed) {
  EXPECT_TRUE(square.icon(label(LoadLevel::calm)).isMask());
  EXPECT_FALSE(square.icon(label(LoadLevel::hot)).isMask());
  EXPECT_GT(count(square.draw(label(LoadLevel::hot), 44), isRed), 300);
  EXPECT_EQ(count(square.draw(label(LoadLevel::calm), 44), isRed), 0);
}

TEST_F(FlameImagesTest, ACalmFlameIsAnOutline) {
  const int outline = count(square.draw(label(LoadLevel::calm), 44), isWhite);
  const int filled = count(square.draw(label(LoadLevel::hot), 44), isRed);
  EXPECT_GT(outline, 50);
  EXPECT_LT(outline, filled);
}

TEST_F(FlameImagesTest, AnEqualLabelIsTheSameImage) {
  const auto key = square.icon(label(LoadLevel::warm, 2)).cacheKey();
  EXPECT_EQ(square.icon(label(LoadLevel::warm, 2)).cacheKey(), key);
  EXPECT_NE(square.icon(label(LoadLevel::warm, 3)).cacheKey(), key);
  EXPECT_NE(square.icon(label(LoadLevel::warm)).cacheKey(), key);
}

TEST_F(FlameImagesTest, AFlameSinksFromItsBase) {
  const QImage still = square.draw(label(LoadLevel::hot, 0), 44).toImage();
  const QImage sunk = square.draw(label(LoadLevel::hot, 1), 44).toImage();
  const auto top = [](const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (isRed(image.pixelColor(x, y))) return y;
      }
    }
    return image.height();
  };
  const auto bottom = [](const QImage& image) {
    for (int y = image.height() - 1; y >= 0; --y) {
      for (int x = 0; x < image.width(); ++x) {
        if (isRed(image.pixelColor(x, y))) return y;
      }
    }
    return -1;
  };
  EXPECT_GT(top(sunk), top(still));
  EXPECT_NEAR(bottom(sunk), bottom(still), 1) << "it sinks towards the foot of its square";
}

TEST_F(FlameImagesTest, WattsStandBesideTheFlameInABarAndBelowItInASquare) {
  const auto twelve = label(LoadLevel::hot, {}, "12 W");
  EXPECT_GT(bar.draw(twelve, 44).width(), 80);
  EXPECT_EQ(square.draw(twelve, 44).width(), 44);
  EXPECT_EQ(bar.draw(label(LoadLevel::hot), 44).width(), 44);
  EXPECT_GT(count(square.draw(twelve, 44), isWhite), 30) << "digits can be read";
}

TEST_F(FlameImagesTest, TheFlameStandsClearOfTheFiguresBelowIt) {
  for (const int height : {16, 22, 44, 64}) {
    const QImage image = square.draw(label(LoadLevel::calm, {}, "0 W"), height).toImage();
    // Seen on a dark bar.
    const auto isClear = [&](int y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor color = image.pixelColor(x, y);
        if (color.lightnessF() * color.alphaF() > 0.25) return false;
      }
      return true;
    };
    bool isBetween = false;
    for (int y = height / 2; y < height * 3 / 4; ++y) isBetween |= isClear(y);
    EXPECT_TRUE(isBetween) << "they run together at a height of " << height;
  }
}

TEST_F(FlameImagesTest, ThreeDigitsFitIntoTheSquare) {
  const QImage image = square.draw(label(LoadLevel::hot, {}, "128 W"), 44).toImage();
  for (int y = 0; y < image.height(); ++y) {
    EXPECT_LT(image.pixelColor(0, y).alpha(), 60) << "cut off at the left";
    EXPECT_LT(image.pixelColor(image.width() - 1, y).alpha(), 60) << "cut off at the right";
  }
}

TEST_F(FlameImagesTest, TextOfEqualLengthIsEquallyWide) {
  EXPECT_EQ(bar.draw(label(LoadLevel::hot, {}, "11 W"), 44).width(),
            bar.draw(label(LoadLevel::hot, {}, "28 W"), 44).width());
}

}  // namespace
}  // namespace embrix
