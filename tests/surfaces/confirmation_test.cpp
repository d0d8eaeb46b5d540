#include "surfaces/confirmation.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

class ConfirmationTest : public testing::Test {
 protected:
  void ask(const std::string& question) {
    confirmation.ask(question, "It is lost.", "Stop", [this, question] { done += question; });
  }

  Confirmation confirmation;
  std::string done;
};

TEST_F(ConfirmationTest, NothingHappensBeforeAnAnswer) {
  ask("Stop vite?");
  ASSERT_TRUE(*confirmation.request());
  EXPECT_EQ((*confirmation.request())->question, "Stop vite?");
  EXPECT_EQ((*confirmation.request())->message, "It is lost.");
  EXPECT_EQ((*confirmation.request())->actionTitle, "Stop");
  EXPECT_EQ(done, "");
}

TEST_F(ConfirmationTest, ANoNeverActs) {
  ask("Stop vite?");
  confirmation.answer(false);
  EXPECT_FALSE(*confirmation.request());
  EXPECT_EQ(done, "");
}

TEST_F(ConfirmationTest, AYesActsOnceTheQuestionIsGone) {
  confirmation.ask("Stop?", {}, "Stop",
                   [this] { done = *confirmation.request() ? "too soon" : "done"; });
  confirmation.answer(true);
  EXPECT_EQ(done, "done");
}

TEST_F(ConfirmationTest, ASecondQuestionTakesThePlaceOfTheFirst) {
  ask("first");
  const std::string id = (*confirmation.request())->id;
  ask("second");
  EXPECT_EQ((*confirmation.request())->question, "second");
  EXPECT_NE((*confirmation.request())->id, id);
  confirmation.answer(true);
  EXPECT_EQ(done, "second");
}

TEST_F(ConfirmationTest, AnAnswerToNothingIsNothing) {
  int told = 0;
  const auto subscription = confirmation.request().subscribe([&](const auto&) { ++told; });
  confirmation.answer(true);
  EXPECT_EQ(told, 0);
}

TEST_F(ConfirmationTest, AnActionMayAskAgain) {
  confirmation.ask("one", {}, "Go", [this] { ask("two"); });
  confirmation.answer(true);
  EXPECT_EQ((*confirmation.request())->question, "two");
}

TEST_F(ConfirmationTest, WithNobodyToAskAButtonActsAtOnce) {
  Confirmation::askOrAct(nullptr, "Stop?", {}, "Stop", [this] { done = "at once"; });
  EXPECT_EQ(done, "at once");
  Confirmation::askOrAct(&confirmation, "Stop?", {}, "Stop", [this] { done = "asked"; });
  EXPECT_EQ(done, "at once");
  confirmation.answer(true);
  EXPECT_EQ(done, "asked");
}

TEST(ConfirmationLifeTest, AnUnansweredQuestionGoesWithItsSurface) {
  bool acted = false;
  {
    Confirmation confirmation;
    confirmation.ask("Stop?", {}, "Stop", [&] { acted = true; });
  }
  EXPECT_FALSE(acted);
}

}  // namespace
}  // namespace embrix
