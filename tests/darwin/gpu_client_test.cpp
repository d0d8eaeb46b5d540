#include "darwin/gpu_client.h"

#include <gtest/gtest.h>

#include <limits>

namespace embrix {
namespace {

using Times = std::vector<std::optional<std::uint64_t>>;

Property context(Property time) {
  return PropertyMap{{"API", "Metal"}, {"lastSubmittedTime", 5}, {"accumulatedGPUTime", time}};
}

TEST(GpuClientTest, TellsItsCreatorAndTheTimeOfEachContext) {
  EXPECT_EQ(
      gpuClient("pid 409, WindowServer", PropertyList{context(1'000'000'000), context(5)}),
      (GpuClient{.creator = "pid 409, WindowServer", .accumulatedTimes = Times{1'000'000'000, 5}}));
}

TEST(GpuClientTest, AnEmptyListIsAClientWithoutContexts) {
  EXPECT_EQ(gpuClient("pid 409, runningboardd", PropertyList{}),
            (GpuClient{.creator = "pid 409, runningboardd", .accumulatedTimes = Times{}}));
}

TEST(GpuClientTest, WhatTheDriverDoesNotTellIsAbsent) {
  EXPECT_EQ(gpuClient({}, {}), GpuClient{});
  EXPECT_EQ(gpuClient({}, PropertyList{context(7)}),
            (GpuClient{.creator = std::nullopt, .accumulatedTimes = Times{7}}));
}

TEST(GpuClientTest, AContextWithoutANumberIsAbsentInItsPlace) {
  EXPECT_EQ(
      gpuClient({}, PropertyList{PropertyMap{}, context("many"), context(3)}).accumulatedTimes,
      (Times{std::nullopt, std::nullopt, 3}));
}

TEST(GpuClientTest, PropertiesOfAnotherKindCountAsMissing) {
  EXPECT_EQ(gpuClient(409, PropertyMap{{"accumulatedGPUTime", 3}}), GpuClient{});
  EXPECT_EQ(gpuClient({}, PropertyList{context(3), "context"}), GpuClient{});
}

TEST(GpuClientTest, TimesAreUnsigned) {
  EXPECT_EQ(gpuClient({}, PropertyList{context(std::int64_t{-1})}).accumulatedTimes,
            Times{std::numeric_limits<std::uint64_t>::max()});
}

}  // namespace
}  // namespace embrix
