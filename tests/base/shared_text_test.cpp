#include "base/shared_text.h"

#include <compare>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(SharedTextTest, HoldsTheCharactersItWasMadeFrom) {
  EXPECT_EQ(SharedText("node").view(), "node");
  EXPECT_EQ(SharedText(std::string("a\0b", 3)).size(), 3u);
  EXPECT_EQ(SharedText("\xff\x80").string(), "\xff\x80");
}

TEST(SharedTextTest, EmptyTextEqualsTextThatWasNeverSet) {
  const SharedText unset;
  EXPECT_TRUE(unset.empty());
  EXPECT_EQ(unset.view(), "");
  EXPECT_EQ(SharedText(""), unset);
  EXPECT_EQ(SharedText("").hash(), unset.hash());
}

TEST(SharedTextTest, CopyHasTheSameCharactersInTheSamePlace) {
  const SharedText text("com.apple.WebKit.WebContent");
  const SharedText copy = text;
  EXPECT_EQ(copy, text);
  EXPECT_EQ(copy.view().data(), text.view().data());
}

TEST(SharedTextTest, OutlivesTheTextItWasCopiedFrom) {
  SharedText copy;
  {
    const SharedText text("short-lived");
    copy = text;
  }
  EXPECT_EQ(copy, "short-lived");
}

TEST(SharedTextTest, MovedFromTextIsEmpty) {
  SharedText text("node");
  const SharedText taken = std::move(text);
  EXPECT_EQ(taken, "node");
  EXPECT_TRUE(text.empty());  // NOLINT(bugprone-use-after-move): that is what is tested
}

TEST(SharedTextTest, AssignmentReplacesAndSurvivesItself) {
  SharedText text("one");
  const SharedText other("two");
  text = other;
  EXPECT_EQ(text, other);
  const SharedText& itself = text;
  text = itself;
  EXPECT_EQ(text, "two");
  text = SharedText();
  EXPECT_TRUE(text.empty());
}

TEST(SharedTextTest, EqualCharactersAreEqualTexts) {
  const SharedText a("node");
  const SharedText b("node");
  ASSERT_NE(a.view().data(), b.view().data());
  EXPECT_EQ(a, b);
  EXPECT_EQ(a.hash(), b.hash());
  EXPECT_NE(a, SharedText("nodes"));
  EXPECT_NE(a, SharedText());
  EXPECT_EQ(a, std::string("node"));
}

TEST(SharedTextTest, HashIsThatOfTheCharacters) {
  EXPECT_EQ(SharedText("node").hash(), SharedText::hashOf("node"));
  EXPECT_EQ(SharedText().hash(), SharedText::hashOf(""));
}

TEST(SharedTextTest, OrderIsThatOfTheBytes) {
  EXPECT_LT(SharedText("a"), SharedText("b"));
  EXPECT_LT(SharedText(), SharedText("a"));
  EXPECT_LT(SharedText("Z"), SharedText("a"));
  EXPECT_LT(SharedText("a"), SharedText("\xc3\xa4"));
  EXPECT_EQ(SharedText("a") <=> SharedText("a"), std::strong_ordering::equal);
}

TEST(SharedTextTest, ThreadsMayCopyAndReleaseOneText) {
  const SharedText text("shared by all of them");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([text] {
      for (int round = 0; round < 10000; ++round) {
        SharedText copy = text;
        SharedText again = copy;
        copy = SharedText();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(text, "shared by all of them");
}

}  // namespace
}  // namespace embrix
