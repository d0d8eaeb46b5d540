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

TEST(EXFontTest, TheNearestCutIsTaken) {
  struct Case {
    EXFont font;
    const char* file;
    int weight;
  };
  const Case cases[] = {
      {{Kind::text, 13.5, 700}, "dm-sans-14-700", 700},
      {{Kind::text, 11, 400}, "dm-sans-9-400", 400},
      {{Kind::text, 58, 500}, "dm-sans-40-500", 500},
      {{Kind::text, 19, 650}, "dm-sans-14-600", 600},
      {{Kind::text, 14, 700, true}, "dm-sans-digits-700", 700},
      {{Kind::display, 58, 700}, "unbounded-700", 700},
      {{Kind::display, 20, 400}, "unbounded-600", 600},
      {{Kind::mono, 12, 700}, "dm-mono-400", 400},
  };
  for (const Case& c : cases) EXPECT_EQ(c.font.cut(), (EXFont::Cut{c.file, c.weight})) << c.file;
}

TEST(EXFontTest, TheKeyTellsKindSizeAndWeight) {
  EXPECT_EQ((EXFont{Kind::text, 13.5, 700}.key()), "text|13.5|700");
  EXPECT_EQ((EXFont{Kind::display, 58, 700}.key()), "display|58|700");
  EXPECT_NE((EXFont{Kind::text, 14, 700, true}.key()), (EXFont{Kind::text, 14, 700}.key()));
}

}  // namespace
}  // namespace embrix
