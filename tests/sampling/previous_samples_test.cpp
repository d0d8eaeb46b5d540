#include "sampling/previous_samples.h"

#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

ProcessSample sample(std::int32_t pid, std::uint64_t cpuNS) {
  ProcessSample made;
  made.pid = pid;
  made.startTime = 1000;
  made.energyNJ = 5;
  made.cpuNS = cpuNS;
  made.wakeups = 3;
  return made;
}

TEST(PreviousSamplesTest, KeepsTheCountersByPid) {
  const PreviousSamples previous({sample(10, 1), sample(20, 2)});
  const ProcessCounters* counters = previous.find(20);
  ASSERT_NE(counters, nullptr);
  EXPECT_EQ(counters->startTime, 1000u);
  EXPECT_EQ(counters->energyNJ, 5u);
  EXPECT_EQ(counters->cpuNS, 2u);
  EXPECT_EQ(counters->wakeups, 3u);
  EXPECT_EQ(previous.find(30), nullptr);
}

TEST(PreviousSamplesTest, NewCountersReplaceThoseOfTheSamePids) {
  PreviousSamples previous({sample(10, 1)});
  previous.keep({sample(10, 9)});
  EXPECT_EQ(previous.find(10)->cpuNS, 9u);
}

TEST(PreviousSamplesTest, WhatIsGoneFromTheTableIsForgotten) {
  PreviousSamples previous({sample(10, 1), sample(20, 2)});
  previous.keep({sample(20, 5)});
  EXPECT_EQ(previous.find(10), nullptr);
  EXPECT_EQ(previous.find(20)->cpuNS, 5u);
  previous.keep({});
  EXPECT_EQ(previous.find(20), nullptr);
}

}  // namespace
}  // namespace embrix
