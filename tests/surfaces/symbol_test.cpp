#include "surfaces/symbol.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(SymbolTest, EveryDrawingLiesWithinItsSquare) {
  for (const std::string_view name : Symbol::names()) {
    const auto parts = Symbol::parts(name);
    ASSERT_FALSE(parts.empty()) << name;
    for (const Symbol::Part& part : parts) {
      const Rect box = part.path.bounds();
      EXPECT_GE(box.x - part.lineWidth / 2, 0) << name;
      EXPECT_GE(box.y - part.lineWidth / 2, 0) << name;
      EXPECT_LE(box.x + box.width + part.lineWidth / 2, Symbol::kUnits) << name;
      EXPECT_LE(box.y + box.height + part.lineWidth / 2, Symbol::kUnits) << name;
    }
  }
}

TEST(SymbolTest, KnowsWhatTheFinderGivesToRowsAndWhatThePopoverShows) {
  for (const char* name :
       {"server.rack", "iphone.gen3", "shippingbox", "hammer", "sparkles", "cable.connector",
        "terminal", "flame", "flame.fill", "xmark", "chevron.right", "arrow.up.right",
        "slider.horizontal.3", "moon.zzz", "antenna.radiowaves.left.and.right"}) {
    EXPECT_TRUE(Symbol::isKnown(name)) << name;
  }
}

TEST(SymbolTest, AnUnknownNameIsADot) {
  for (const char* name : {"", "no.such.symbol", "Flame"}) {
    EXPECT_FALSE(Symbol::isKnown(name));
    EXPECT_EQ(Symbol::parts(name).size(), 1u);
  }
}

TEST(SymbolTest, AFilledFlameIsNoOutline) {
  EXPECT_GT(Symbol::parts("flame").front().lineWidth, 0);
  EXPECT_EQ(Symbol::parts("flame.fill").front().lineWidth, 0);
}

}  // namespace
}  // namespace embrix
