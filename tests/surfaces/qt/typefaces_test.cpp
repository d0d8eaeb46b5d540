#include "surfaces/qt/typefaces.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QFontMetricsF>

#include "surfaces/qt/surface_engine.h"

namespace embrix {
namespace {

class TypefacesTest : public testing::Test {
 protected:
  SurfaceEngine engine;  // brings the files
};

TEST_F(TypefacesTest, EveryCutIsTheTypefaceItIsSaidToBe) {
  struct Case {
    EXFont font;
    const char* family;
  };
  using Kind = EXFont::Kind;
  for (const Case& c :
       {Case{{Kind::display, 58, 700}, "Unbounded"}, Case{{Kind::display, 20, 600}, "Unbounded"},
        Case{{Kind::text, 11, 400}, "DM Sans 9"}, Case{{Kind::text, 14, 500}, "DM Sans 14"},
        Case{{Kind::text, 20, 600}, "DM Sans 24"}, Case{{Kind::text, 48, 700}, "DM Sans 40"},
        Case{{Kind::text, 14, 700, true}, "DM Sans Digits"},
        Case{{Kind::mono, 12, 400}, "DM Mono"}}) {
    const QFontInfo info(Typefaces::make(c.font));
    EXPECT_EQ(info.family(), c.family);
    EXPECT_EQ(info.weight(), c.font.weight) << c.family;
  }
}

TEST_F(TypefacesTest, WeightsDiffer) {
  const auto width = [](int weight) {
    return QFontMetricsF(Typefaces::make({EXFont::Kind::text, 14, weight}))
        .horizontalAdvance("Left running");
  };
  EXPECT_LT(width(400), width(500));
  EXPECT_LT(width(500), width(600));
  EXPECT_LT(width(600), width(700));
}

TEST_F(TypefacesTest, EqualDigitsAreEquallyWide) {
  const QFontMetricsF equal(Typefaces::make({EXFont::Kind::text, 14, 700, true}));
  const QFontMetricsF plain(Typefaces::make({EXFont::Kind::text, 14, 700}));
  for (const char digit : std::string("0123456789")) {
    EXPECT_EQ(equal.horizontalAdvance(QChar(digit)), equal.horizontalAdvance(QChar('0'))) << digit;
  }
  EXPECT_LT(plain.horizontalAdvance(QChar('1')), plain.horizontalAdvance(QChar('0')));
}

TEST_F(TypefacesTest, APointIsAPixel) {
  EXPECT_NEAR(QFontInfo(Typefaces::make({EXFont::Kind::text, 58, 700})).pixelSize(), 58, 0.5);
}

TEST_F(TypefacesTest, AFontIsMadeOnce) {
  const EXFont font{EXFont::Kind::text, 13.5, 700};
  EXPECT_EQ(&Typefaces::make(font), &Typefaces::make(font));
  EXPECT_NE(&Typefaces::make(font), &Typefaces::make({EXFont::Kind::text, 13.5, 600}));
}

}  // namespace
}  // namespace embrix
