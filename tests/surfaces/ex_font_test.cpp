#include "surfaces/ex_font.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

using Kind = EXFont::Kind;

TEST(EXFontTest, TheOpticalSizeStaysWithinWhatTheTypefaceWasDrawnFor) {
  struct Case {
    double size;
    double opticalSize;
  };
  for (const Case& c : {Case{48, 40}, Case{8, 9}, Case{13.5, 13.5}, Case{40, 40}, Case{9, 9}}) {
    const EXFont font{Kind::text, c.size, 500};
    EXPECT_EQ(font.axes(), (std::vector<EXFont::Axis>{{"wght", 500}, {"opsz", c.opticalSize}}));
  }
}

TEST(EXFontTest, EachKindHasItsFamilyAndAxes) {
  EXPECT_EQ((EXFont{Kind::display, 58, 700}.family()), "Unbounded");
  EXPECT_EQ((EXFont{Kind::display, 58, 700}.axes()), (std::vector<EXFont::Axis>{{"wght", 700}}));
  EXPECT_EQ((EXFont{Kind::text, 13, 400}.family()), "DM Sans");
  EXPECT_EQ((EXFont{Kind::mono, 13, 400}.family()), "DM Mono");
  EXPECT_TRUE((EXFont{Kind::mono, 13, 400}.axes().empty()));
}

TEST(EXFontTest, TheKeyTellsKindSizeAndWeight) {
  EXPECT_EQ((EXFont{Kind::text, 13.5, 700}.key()), "text|13.5|700");
  EXPECT_EQ((EXFont{Kind::display, 58, 700}.key()), "display|58|700");
}

}  // namespace
}  // namespace embrix
