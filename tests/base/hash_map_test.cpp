#include "base/hash_map.h"

#include <cstdint>
#include <string_view>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(HashMapTest, TextIsFoundBySharedTextAndByView) {
  HashMap<SharedText, int> map;
  map["node"] = 1;
  EXPECT_EQ(map.find(SharedText("node"))->second, 1);
  EXPECT_EQ(map.find(std::string_view("node"))->second, 1);
  EXPECT_EQ(map.find(std::string_view("nodes")), map.end());
  EXPECT_EQ(map.find(std::string_view()), map.end());
}

TEST(HashMapTest, EmptyTextIsAKeyLikeAnyOther) {
  HashMap<SharedText, int> map;
  map[SharedText()] = 7;
  EXPECT_EQ(map.find(std::string_view(""))->second, 7);
}

TEST(HashMapTest, SetFindsByView) {
  const HashSet<SharedText> set{"1-2", "3-4"};
  EXPECT_TRUE(set.contains(std::string_view("3-4")));
  EXPECT_FALSE(set.contains(std::string_view("3-5")));
}

TEST(HashMapTest, ClearedTableKeepsItsStorage) {
  HashMap<std::int32_t, int> map;
  for (std::int32_t pid = 0; pid < 3000; ++pid) map[pid] = pid;
  const std::size_t buckets = map.bucket_count();
  map.clear();
  EXPECT_TRUE(map.empty());
  for (std::int32_t pid = 0; pid < 3000; ++pid) map[pid] = pid;
  EXPECT_EQ(map.bucket_count(), buckets);
}

}  // namespace
}  // namespace embrix
