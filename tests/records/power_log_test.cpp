#include "records/power_log.h"

#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

constexpr std::size_t kMost = PowerLog::kLongestLog;

std::string readOf(std::string bytes) {
  ScriptedHost world;
  world.powerLog = std::move(bytes);
  Host host = world.host();
  return PowerLog::read(*host.powerLog);
}

std::string times(std::size_t count, std::string_view text) {
  std::string repeated;
  repeated.reserve(count * text.size());
  for (std::size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

TEST(PowerLogTest, ALogComesAsItIs) {
  EXPECT_EQ(readOf("a\nb\n"), "a\nb\n");
  EXPECT_EQ(readOf("\xC3\xA9\t\xF0\x9F\x94\xA5\n"), "\xC3\xA9\t\xF0\x9F\x94\xA5\n");
}

TEST(PowerLogTest, NoLogIsAnEmptyText) {
  EXPECT_EQ(readOf(""), "");
  ScriptedHost world;
  world.powerLog = std::string("a");
  world.failing.insert("powerLog.read");
  Host host = world.host();
  EXPECT_EQ(PowerLog::read(*host.powerLog), "");
}

TEST(PowerLogTest, IllFormedBytesAreReplaced) {
  EXPECT_EQ(readOf("a\xED z"), "a\xEF\xBF\xBD z");
  EXPECT_EQ(readOf("a\xE2\x82"), "a\xEF\xBF\xBD");  // cut inside a character
  EXPECT_EQ(readOf("\x82\xAC z"), "\xEF\xBF\xBD\xEF\xBF\xBD z");
}

TEST(PowerLogTest, TheLastFourMillionCharactersStay) {
  EXPECT_EQ(kMost, 4'000'000u);
  const std::string exact = times(kMost, "b");
  EXPECT_TRUE(readOf(exact) == exact);
  EXPECT_TRUE(readOf(fmt::format("a{}", exact)) == exact);
}

// Each character counts once, whatever its bytes, and none is cut in two.
TEST(PowerLogTest, CharactersCountAndNotBytes) {
  for (const std::string_view character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x94\xA5"}) {
    const std::string most = times(kMost - 2, character);
    EXPECT_TRUE(readOf(times(7, character) + most + "xy") == most + "xy") << character;
  }
}

TEST(PowerLogTest, AReplacedSequenceCountsOnce) {
  EXPECT_TRUE(readOf(times(kMost + 5, "\xE2\x82")) == times(kMost, "\xEF\xBF\xBD"));
}

// Far more than is looked at, with the cut inside a character at each of its bytes.
TEST(PowerLogTest, WhatIsFarBackLeavesNoTrace) {
  const std::string_view fire = "\xF0\x9F\x94\xA5";
  const std::string before = times(1000, fire);
  const std::string kept = times(kMost - 3, fire);
  for (std::size_t bytes = 0; bytes < 4; ++bytes) {
    const std::string end(bytes, 'x');
    const std::string read = readOf(before + kept + end);
    EXPECT_TRUE(read.ends_with(kept + end)) << bytes;
    EXPECT_EQ(read.size(), kept.size() + bytes + (3 - bytes) * fire.size()) << bytes;
  }
}

}  // namespace
}  // namespace embrix
