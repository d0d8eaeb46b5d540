#include "records/shared_map.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sample_records.h"

namespace embrix {
namespace {

using testing::ElementsAre;

std::vector<std::string> keysOf(const SharedMap<double>& map) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : map) keys.push_back(key.string());
  return keys;
}

TEST(SharedMapTest, EntriesAreFoundByKeyWhateverTheirOrder) {
  const auto map = wattsOf({{"b", 2}, {"c", 3}, {"a", 1}});
  EXPECT_EQ(map.size(), 3u);
  EXPECT_THAT(keysOf(map), ElementsAre("a", "b", "c"));
  ASSERT_NE(map.find("b"), nullptr);
  EXPECT_EQ(*map.find("b"), 2);
  for (const char* missing : {"", "aa", "d", "B"}) EXPECT_EQ(map.find(missing), nullptr);
}

TEST(SharedMapTest, OfEqualKeysTheLastStands) {
  EXPECT_EQ(wattsOf({{"a", 1}, {"b", 2}, {"a", 3}}), wattsOf({{"a", 3}, {"b", 2}}));
  EXPECT_EQ(wattsOf({{"a", 1}, {"a", 2}, {"a", 3}}), wattsOf({{"a", 3}}));
}

TEST(SharedMapTest, AnEmptyMapHasNothing) {
  const SharedMap<double> none;
  EXPECT_TRUE(none.empty());
  EXPECT_EQ(none.size(), 0u);
  EXPECT_EQ(none.begin(), none.end());
  EXPECT_EQ(none.find("a"), nullptr);
  EXPECT_EQ(none, SharedMap<double>(std::vector<SharedMap<double>::Entry>{}));
}

TEST(SharedMapTest, MapsAreEqualByTheirEntries) {
  EXPECT_EQ(wattsOf({{"a", 1}, {"b", 2}}), wattsOf({{"b", 2}, {"a", 1}}));
  EXPECT_NE(wattsOf({{"a", 1}}), wattsOf({{"a", 2}}));
  EXPECT_NE(wattsOf({{"a", 1}}), wattsOf({{"b", 1}}));
  EXPECT_NE(wattsOf({{"a", 1}}), wattsOf({{"a", 1}, {"b", 2}}));
}

TEST(SharedMapTest, ACopySharesItsEntries) {
  const auto map = wattsOf({{"a", 1}});
  const auto copy = map;
  EXPECT_EQ(copy.begin(), map.begin());
}

}  // namespace
}  // namespace embrix
