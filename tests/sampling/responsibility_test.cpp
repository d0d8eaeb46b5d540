#include "sampling/responsibility.h"

#include <climits>
#include <optional>

#include <gtest/gtest.h>

#include "fakes/scripted_host.h"

namespace embrix {
namespace {

std::optional<std::int32_t> lookupOf(std::optional<std::int32_t> answer) {
  ScriptedHost world;
  world.add(412, "/usr/libexec/helper").responsiblePID = answer;
  const Host host = world.host();
  return Responsibility(*host.responsibility).lookup(412);
}

TEST(ResponsibilityTest, IsTheAnswerOfThePlatform) {
  EXPECT_EQ(lookupOf(50), 50);
  EXPECT_EQ(lookupOf(412), 412);
  EXPECT_EQ(lookupOf(1), 1);
  EXPECT_EQ(lookupOf(INT_MAX), INT_MAX);
}

TEST(ResponsibilityTest, AnswerBelowOneIsNone) {
  EXPECT_EQ(lookupOf(0), std::nullopt);
  EXPECT_EQ(lookupOf(-1), std::nullopt);
  EXPECT_EQ(lookupOf(INT_MIN), std::nullopt);
}

TEST(ResponsibilityTest, PlatformThatTellsNoneHasNone) {
  EXPECT_EQ(lookupOf(std::nullopt), std::nullopt);
  const Host host = absentHost();
  EXPECT_EQ(Responsibility(*host.responsibility).lookup(412), std::nullopt);
}

}  // namespace
}  // namespace embrix
