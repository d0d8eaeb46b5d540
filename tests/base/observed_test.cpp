#include "base/observed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace embrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ObservedTest : public testing::Test {
 protected:
  auto note(const std::string& reader) {
    return [this, reader](int value) { tell(reader, value); };
  }
  void tell(const std::string& reader, int value) {
    told.push_back(fmt::format("{}{}", reader, value));
  }

  Observed<int> number{1};
  std::vector<std::string> told;
};

TEST_F(ObservedTest, ReadersAreToldOfEachChangeInTheOrderTheyCame) {
  const Subscription a = number.subscribe(note("a"));
  const Subscription b = number.subscribe(note("b"));
  EXPECT_THAT(told, IsEmpty()) << "the present value is no change";
  number = 2;
  number.set(3);
  EXPECT_THAT(told, ElementsAre("a2", "b2", "a3", "b3"));
  EXPECT_EQ(*number, 3);
  EXPECT_EQ(number.get(), 3);
}

TEST_F(ObservedTest, AnEqualValueTellsNobody) {
  const Subscription a = number.subscribe(note("a"));
  number = 1;
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(ObservedTest, ASubscriptionEndsWithItsHandle) {
  Subscription a = number.subscribe(note("a"));
  { const Subscription b = number.subscribe(note("b")); }
  number = 2;
  a.end();
  number = 3;
  EXPECT_THAT(told, ElementsAre("a2"));
}

TEST_F(ObservedTest, AReaderMayEndItsOwnAndAnothersSubscription) {
  Subscription a;
  Subscription b;
  a = number.subscribe([&](int value) {
    a.end();
    b.end();
    tell("a", value);
  });
  b = number.subscribe(note("b"));
  number = 2;
  number = 3;
  EXPECT_THAT(told, ElementsAre("a2"));
}

TEST_F(ObservedTest, AReaderThatSubscribesAnotherTellsItFromTheNextChangeOn) {
  Subscription late;
  const Subscription a = number.subscribe([&](int) { late = number.subscribe(note("late")); });
  number = 2;
  EXPECT_THAT(told, IsEmpty());
  number = 3;
  EXPECT_THAT(told, IsEmpty()) << "it was replaced before its turn";
}

TEST_F(ObservedTest, AnAssignmentWhileReadersAreToldReachesAllWithTheNewestValueOnly) {
  const Subscription a = number.subscribe([&](int value) {
    tell("a", value);
    if (value == 2) number = 7;
  });
  const Subscription b = number.subscribe(note("b"));
  number = 2;
  EXPECT_THAT(told, ElementsAre("a2", "a7", "b7"));
}

TEST_F(ObservedTest, AReaderMayDestroyWhatItReads) {
  auto owned = std::make_unique<Observed<std::string>>("before");
  const Subscription a = owned->subscribe([&](const std::string&) { owned.reset(); });
  const Subscription b = owned->subscribe([&](const std::string& value) { told.push_back(value); });
  owned->set("after");
  EXPECT_EQ(owned, nullptr);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(ObservedTest, ASubscriptionMayOutliveWhatItReads) {
  Subscription left;
  {
    const Observed<int> gone(1);
    left = gone.subscribe(note("gone"));
  }
  left.end();
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(ObservedTest, AnExchangedValueIsToldEvenWhenEqual) {
  const Subscription a = number.subscribe(note("a"));
  EXPECT_EQ(number.exchange(1), 1);
  EXPECT_EQ(number.exchange(5), 1);
  EXPECT_THAT(told, ElementsAre("a1", "a5"));
}

TEST_F(ObservedTest, AChangeInPlaceIsToldUnlessItSaysThatNothingChanged) {
  const Subscription a = number.subscribe(note("a"));
  number.change([](int& value) { value += 1; });
  number.change([](int&) { return false; });
  number.change([](int& value) {
    value += 1;
    return true;
  });
  EXPECT_THAT(told, ElementsAre("a2", "a3"));
}

TEST_F(ObservedTest, WhatIsHeldIsToldOnceWithTheNewestValueAtTheRelease) {
  const Subscription a = number.subscribe(note("a"));
  number.hold();
  number = 2;
  number = 3;
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(*number, 3) << "the value is there at once";
  number.release();
  EXPECT_THAT(told, ElementsAre("a3"));
  number.hold();
  number.release();
  EXPECT_THAT(told, ElementsAre("a3")) << "nothing changed";
  number = 4;
  EXPECT_THAT(told, ElementsAre("a3", "a4"));
}

}  // namespace
}  // namespace embrix
