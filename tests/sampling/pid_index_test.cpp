#include "sampling/pid_index.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace embrix {
namespace {

std::vector<ProcessSample> tableOf(const std::vector<std::int32_t>& pids) {
  std::vector<ProcessSample> samples(pids.size());
  for (std::size_t i = 0; i < pids.size(); ++i) samples[i].pid = pids[i];
  return samples;
}

TEST(PIDIndexTest, NothingStandsInAnIndexOfNothing) {
  PIDIndex index;
  EXPECT_EQ(index.find(1), std::nullopt);
  EXPECT_FALSE(index.hasRepeats());
  index.rebuild({});
  EXPECT_EQ(index.find(0), std::nullopt);
}

TEST(PIDIndexTest, EveryPidStandsAtItsPlace) {
  PIDIndex index;
  index.rebuild(tableOf({30, 10, 20}));
  EXPECT_EQ(index.find(30), 0u);
  EXPECT_EQ(index.find(10), 1u);
  EXPECT_EQ(index.find(20), 2u);
  EXPECT_EQ(index.find(40), std::nullopt);
  EXPECT_FALSE(index.hasRepeats());
}

TEST(PIDIndexTest, FirstRowSpeaksForAPidThatStandsTwice) {
  PIDIndex index;
  index.rebuild(tableOf({10, 20, 10}));
  EXPECT_EQ(index.find(10), 0u);
  EXPECT_TRUE(index.hasRepeats());
}

// Every rebuild follows another, so that what was there before could show through.
RC_GTEST_PROP(PIDIndexPropertyTest, HoldsTheLastTableOnly, ()) {
  const auto tables = *rc::gen::container<std::vector<std::vector<std::int32_t>>>(
      rc::gen::container<std::vector<std::int32_t>>(rc::gen::inRange(-2, 12)));
  PIDIndex index;
  for (const std::vector<std::int32_t>& pids : tables) {
    index.rebuild(tableOf(pids));
    std::map<std::int32_t, std::size_t> expected;
    for (std::size_t i = 0; i < pids.size(); ++i) expected.emplace(pids[i], i);
    RC_ASSERT(index.hasRepeats() == (expected.size() < pids.size()));
    for (std::int32_t pid = -3; pid < 13; ++pid) {
      const auto found = expected.find(pid);
      RC_ASSERT(index.find(pid) ==
                (found == expected.end() ? std::nullopt : std::optional(found->second)));
    }
  }
}

}  // namespace
}  // namespace embrix
