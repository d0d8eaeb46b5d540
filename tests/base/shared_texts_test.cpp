#include "base/shared_texts.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(SharedTextsTest, HoldsTheTextsItWasMadeFrom) {
  const SharedTexts texts = {"node", "", "\xff\x80"};
  EXPECT_EQ(texts, (std::vector<std::string>{"node", "", "\xff\x80"}));
  EXPECT_EQ(texts.size(), 3u);
  EXPECT_EQ(texts.front(), "node");
  EXPECT_EQ(texts[2], "\xff\x80");
  EXPECT_EQ(std::span<const std::string>(texts).subspan(1).size(), 2u);
}

TEST(SharedTextsTest, AnEmptyListEqualsOneThatWasNeverSet) {
  const SharedTexts unset;
  EXPECT_TRUE(unset.empty());
  EXPECT_EQ(unset.size(), 0u);
  EXPECT_EQ(unset.begin(), unset.end());
  EXPECT_EQ(SharedTexts(std::vector<std::string>()), unset);
  EXPECT_TRUE(SharedTexts(std::vector<std::string>()).empty());
  EXPECT_FALSE(SharedTexts({""}).empty());
}

TEST(SharedTextsTest, ACopyHasTheSameTextsInTheSamePlaceAndOutlivesTheFirst) {
  SharedTexts copy;
  const std::string* place = nullptr;
  {
    const SharedTexts texts = {"a", "b"};
    place = texts.data();
    copy = texts;
  }
  EXPECT_EQ(copy.data(), place);
  EXPECT_EQ(copy, (SharedTexts{"a", "b"}));
}

TEST(SharedTextsTest, ListsThatReadAlikeAreEqualWhereverTheyStand) {
  EXPECT_EQ((SharedTexts{"a", "b"}), (SharedTexts{"a", "b"}));
  EXPECT_NE((SharedTexts{"a", "b"}), (SharedTexts{"a"}));
  EXPECT_NE((SharedTexts{"a b"}), (SharedTexts{"a", "b"}));
  EXPECT_NE((SharedTexts{""}), SharedTexts());
}

}  // namespace
}  // namespace embrix
