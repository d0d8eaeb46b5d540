#include "frame/app_group.h"

#include <initializer_list>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace embrix {
namespace {

ProcessRow row(std::int32_t pid, const char* name, double watts) {
  return {.id = std::to_string(pid) + "-1000",
          .pid = pid,
          .uid = 501,
          .name = name,
          .path = std::nullopt,
          .watts = watts,
          .cpuPercent = 10 * watts,
          .wakeupsPerSecond = 0,
          .memoryBytes = 0,
          .gpuWatts = 0};
}

AppGroup groupOf(std::initializer_list<ProcessRow> rows) {
  AppGroup group;
  group.processes = rows;
  return group;
}

TEST(AppGroupTest, IdIsTheKeyOfItsIdentity) {
  AppGroup group;
  group.identity.key = "com.apple.Safari";
  EXPECT_EQ(group.id(), "com.apple.Safari");
}

TEST(AppGroupTest, GroupWithoutProcessesHasNoBundles) {
  EXPECT_TRUE(AppGroup().bundles().empty());
}

TEST(AppGroupTest, OneProcessIsOneBundleWithThatRow) {
  const AppGroup group = groupOf({row(7, "node", 1.5)});
  const auto bundles = group.bundles();
  ASSERT_EQ(bundles.size(), 1u);
  EXPECT_EQ(bundles[0].name, "node");
  EXPECT_EQ(bundles[0].count, 1);
  EXPECT_EQ(bundles[0].watts, 1.5);
  EXPECT_EQ(bundles[0].cpuPercent, 15);
  EXPECT_EQ(bundles[0].heaviest, group.processes[0]);
}

TEST(AppGroupTest, SameNamedProcessesFoldIntoOneBundleLedByTheHungriest) {
  const AppGroup group = groupOf({row(7, "node", 3), row(8, "node", 1)});
  const auto bundles = group.bundles();
  ASSERT_EQ(bundles.size(), 1u);
  EXPECT_EQ(bundles[0].count, 2);
  EXPECT_EQ(bundles[0].watts, 4);
  EXPECT_EQ(bundles[0].cpuPercent, 40);
  EXPECT_EQ(bundles[0].heaviest, row(7, "node", 3));
}

TEST(AppGroupTest, BundlesComeByTheirSumNotByTheirHungriestRow) {
  const auto bundles = groupOf({row(1, "solo", 3), row(2, "many", 2), row(3, "many", 2)}).bundles();
  ASSERT_EQ(bundles.size(), 2u);
  EXPECT_EQ(bundles[0].name, "many");
  EXPECT_EQ(bundles[1].name, "solo");
}

TEST(AppGroupTest, EqualBundlesKeepTheOrderInWhichTheirNamesAppear) {
  const auto bundles =
      groupOf({row(1, "z", 2), row(2, "a", 2), row(3, "m", 1), row(4, "b", 1)}).bundles();
  ASSERT_EQ(bundles.size(), 4u);
  EXPECT_EQ(bundles[0].name, "z");
  EXPECT_EQ(bundles[1].name, "a");
  EXPECT_EQ(bundles[2].name, "m");
  EXPECT_EQ(bundles[3].name, "b");
}

TEST(AppGroupTest, GPUShareIsNotAddedToTheWattsThatContainIt) {
  ProcessRow gpuUser = row(1, "gpu", 2);
  gpuUser.gpuWatts = 1.5;
  EXPECT_EQ(groupOf({gpuUser}).bundles()[0].watts, 2);
}

TEST(AppGroupTest, BundlesHoldEveryProcessOnce) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> small(0, 4);
  for (int round = 0; round < 200; ++round) {
    AppGroup group;
    for (std::int32_t pid = 8 * small(random); pid > 0; --pid) {
      group.processes.push_back(row(pid, std::to_string(small(random)).c_str(), small(random)));
    }
    int count = 0;
    double watts = 0;
    for (const ProcessBundle& bundle : group.bundles()) {
      count += bundle.count;
      watts += bundle.watts;
    }
    double expectedWatts = 0;
    for (const ProcessRow& one : group.processes) expectedWatts += one.watts;
    EXPECT_EQ(count, static_cast<int>(group.processes.size()));
    EXPECT_EQ(watts, expectedWatts);
  }
}

TEST(AppGroupTest, AChangedFieldOfARowMakesTheGroupUnequal) {
  const AppGroup group = groupOf({row(1, "a", 1)});
  AppGroup other = group;
  EXPECT_EQ(group, other);
  other.processes[0].memoryBytes += 1;
  EXPECT_NE(group, other);
}

}  // namespace
}  // namespace embrix
