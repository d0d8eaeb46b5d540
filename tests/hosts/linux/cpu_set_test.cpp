#include "hosts/linux/cpu_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <vector>

namespace embrix {
namespace {

using testing::IsEmpty;

CpuSet cpus(const std::vector<int>& numbers) {
  return CpuSet::of(numbers);
}

TEST(CpuSetTest, HoldsItsNumbersInOrder) {
  EXPECT_EQ(cpus({70, 0, 3, 64, 3}).numbers(), (std::vector<int>{0, 3, 64, 70}));
  EXPECT_THAT(cpus({}).numbers(), IsEmpty());
  EXPECT_TRUE(cpus({}).empty());
  EXPECT_FALSE(cpus({8191}).empty());
}

TEST(CpuSetTest, NumbersThatNoCpuHasAreLeftOut) {
  EXPECT_TRUE(
      cpus({-1, 8192, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}).empty());
}

TEST(CpuSetTest, SetsOfTheSameNumbersAreEqualHoweverTheyCameToBe) {
  EXPECT_EQ(cpus({1, 200}) & cpus({1, 2, 3}), cpus({1}));
  EXPECT_EQ(cpus({1}) & cpus({2}), CpuSet());
}

TEST(CpuSetTest, WithinMeansNoNumberOfItsOwn) {
  EXPECT_TRUE(cpus({1, 2}).isWithin(cpus({0, 1, 2, 100})));
  EXPECT_FALSE(cpus({1, 2, 100}).isWithin(cpus({1, 2})));
  EXPECT_TRUE(cpus({}).isWithin(cpus({1})));
  EXPECT_TRUE(cpus({1, 8191}).isWithin(CpuSet::everywhere()));
}

TEST(CpuSetTest, AThreadCanBeConfinedAndFreed) {
  const auto before = CpuSet::ofThread(0);
  ASSERT_TRUE(before.has_value());
  const CpuSet last = cpus({before->numbers().back()});
  EXPECT_EQ(last.applyTo(0), 0);
  EXPECT_EQ(CpuSet::ofThread(0), last);
  // Wherever it may run: more than the machine has does not matter.
  EXPECT_EQ(CpuSet::everywhere().applyTo(0), 0);
  EXPECT_TRUE(before->isWithin(CpuSet::ofThread(0).value_or(CpuSet())));
  EXPECT_EQ(before->applyTo(0), 0);
  EXPECT_EQ(CpuSet::ofThread(0), before);
}

TEST(CpuSetTest, WhatCannotBeDoneSaysWhy) {
  EXPECT_EQ(CpuSet().applyTo(0), EINVAL);
  EXPECT_EQ(cpus({0}).applyTo(std::numeric_limits<int>::max()), ESRCH);
  EXPECT_EQ(CpuSet::ofThread(std::numeric_limits<int>::max()), std::nullopt);
}

}  // namespace
}  // namespace embrix
