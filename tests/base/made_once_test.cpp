#include "base/made_once.h"

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(MadeOnceTest, TheFirstToAskMakesIt) {
  const MadeOnce<std::string> text;
  EXPECT_EQ(text.get([] { return "first"; }), "first");
  EXPECT_EQ(text.get([] { return "second"; }), "first");
}

TEST(MadeOnceTest, AMakerThatThrowsMadeNothing) {
  const MadeOnce<std::string> text;
  EXPECT_THROW(text.get([]() -> std::string { throw std::runtime_error("no"); }),
               std::runtime_error);
  EXPECT_EQ(text.get([] { return "second"; }), "second");
}

TEST(MadeOnceTest, AllThreadsSeeTheSame) {
  const MadeOnce<std::vector<int>> list;
  std::vector<const std::vector<int>*> seen(4);
  std::vector<std::thread> threads;
  for (auto& place : seen) {
    threads.emplace_back([&] { place = &list.get([] { return std::vector<int>(1000, 7); }); });
  }
  for (auto& thread : threads) thread.join();
  for (const auto* each : seen) {
    EXPECT_EQ(each, seen.front());
    EXPECT_EQ(each->size(), 1000u);
  }
}

}  // namespace
}  // namespace embrix
