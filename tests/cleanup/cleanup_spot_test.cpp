#include "cleanup/cleanup_spot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace embrix {
namespace {

using testing::IsEmpty;

constexpr double kNow = 1'750'000'000;
constexpr double kDay = 86'400;

bool isUnused(const CleanupItem& item, CleanupSpot::Kind kind = CleanupSpot::Kind::cache) {
  const CleanupSpot spot{.kind = kind, .items = {item}};
  return !spot.unused(kNow).empty();
}

TEST(CleanupSpotTest, AnObsoleteItemIsUnusedWhateverItsAgeIfItHasAByte) {
  CleanupItem item{.bytes = 0, .obsolete = "The project folder is gone"};
  EXPECT_FALSE(isUnused(item));
  item.bytes = 1;
  EXPECT_TRUE(isUnused(item));
  item.lastUsed = kNow;
  EXPECT_TRUE(isUnused(item));
}

TEST(CleanupSpotTest, AnItemIsUnusedFromThirtyDaysOnToTheSecond) {
  CleanupItem item{.bytes = 1, .lastUsed = kNow - 30 * kDay};
  EXPECT_TRUE(isUnused(item));
  item.lastUsed = kNow - 30 * kDay + 1;
  EXPECT_FALSE(isUnused(item));
}

TEST(CleanupSpotTest, ADateOfAdditionNeverMakesUnused) {
  CleanupItem item{.bytes = 1, .lastUsed = kNow - 400 * kDay, .dateIsAdded = true};
  EXPECT_FALSE(isUnused(item));
  item.obsolete = "This iPhone15,2 has moved on to iOS 17.5";
  EXPECT_TRUE(isUnused(item));
}

TEST(CleanupSpotTest, AnUnknownDateNeverMakesUnused) {
  EXPECT_FALSE(isUnused(CleanupItem{.bytes = 1}));
}

TEST(CleanupSpotTest, AnItemInUseIsNeverUnusedEvenWhenObsolete) {
  const CleanupItem item{.bytes = 1,
                         .lastUsed = kNow - 400 * kDay,
                         .inUse = "Xcode is running",
                         .obsolete = "The project folder is gone"};
  EXPECT_FALSE(isUnused(item));
}

TEST(CleanupSpotTest, NothingUnderReviewIsUnused) {
  const CleanupItem item{.bytes = 1, .lastUsed = kNow - 400 * kDay};
  EXPECT_TRUE(isUnused(item, CleanupSpot::Kind::unavailableSimulators));
  EXPECT_FALSE(isUnused(item, CleanupSpot::Kind::review));
}

TEST(CleanupSpotTest, UnusedItemsKeepTheirOrder) {
  const CleanupItem a{.id = "a", .bytes = 1, .obsolete = "gone"};
  const CleanupItem b{.id = "b", .bytes = 2};
  const CleanupItem c{.id = "c", .bytes = 3, .obsolete = "gone"};
  const CleanupSpot spot{.items = {a, b, c}};
  EXPECT_THAT(spot.unused(kNow), testing::ElementsAre(a, c));
  EXPECT_EQ(spot.bytes(), 6);
  EXPECT_THAT(CleanupSpot{}.unused(kNow), IsEmpty());
  EXPECT_EQ(CleanupSpot{}.bytes(), 0);
}

}  // namespace
}  // namespace embrix
