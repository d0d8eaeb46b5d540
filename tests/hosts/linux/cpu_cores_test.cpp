#include "hosts/linux/cpu_cores.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captured_tree.h"

namespace embrix {
namespace {

TEST(CpuListTest, EveryTextHasItsNumbersOrNone) {
  struct Case {
    const char* text;
    std::vector<int> expected;
  };
  const Case cases[] = {
      {"0-3,8,10-11", {0, 1, 2, 3, 8, 10, 11}},
      {"5", {5}},
      {"", {}},
      {"a", {}},
      {"3-1", {}},
      {"-1", {}},
      {"0-", {}},
      {"0,,1", {}},
      {"0-3x", {}},
      {"8191", {8191}},
      {"8192", {}},
      {"0-99999999999999999999", {}},
  };
  for (const Case& c : cases) EXPECT_EQ(parseCpuList(c.text), c.expected) << c.text;
}

TEST(CpuListTest, ARangeOverAndOverIsNoList) {
  std::string text = "0-8191";
  for (int i = 0; i < 10'000; ++i) text += ",0-8191";
  EXPECT_TRUE(parseCpuList(text).empty());
}

class CpuCoresTest : public testing::Test {
 protected:
  void put(int cpu, const std::string& threads, const std::string& capacity = "") {
    const std::string path = fmt::format("sys/devices/system/cpu/cpu{}", cpu);
    tree.write(path + "/topology/core_cpus_list", threads + "\n");
    if (!capacity.empty()) tree.write(path + "/cpu_capacity", capacity + "\n");
  }
  std::optional<CoreCounts> counts() { return countCores(tree.root()); }

  CapturedTree tree;
};

TEST_F(CpuCoresTest, ThreadsOfOneCoreAreOne) {
  for (int cpu = 0; cpu < 8; ++cpu) put(cpu, fmt::format("{},{}", cpu % 4, cpu % 4 + 4));
  EXPECT_EQ(counts(), (CoreCounts{4, 0}));
}

TEST_F(CpuCoresTest, OlderKernelsNameTheListOtherwise) {
  tree.write("sys/devices/system/cpu/cpu0/topology/thread_siblings_list", "0-1\n");
  tree.write("sys/devices/system/cpu/cpu1/topology/thread_siblings_list", "0-1\n");
  EXPECT_EQ(counts(), (CoreCounts{1, 0}));
}

TEST_F(CpuCoresTest, AHybridChipNamesItsKinds) {
  for (int cpu = 0; cpu < 4; ++cpu) put(cpu, fmt::format("{}-{}", cpu / 2 * 2, cpu / 2 * 2 + 1));
  for (int cpu = 4; cpu < 12; ++cpu) put(cpu, std::to_string(cpu));
  tree.write("sys/devices/cpu_core/cpus", "0-3\n");
  tree.write("sys/devices/cpu_atom/cpus", "4-11\n");
  EXPECT_EQ(counts(), (CoreCounts{2, 8}));
}

TEST_F(CpuCoresTest, CapacitiesTellTheKindsElsewhere) {
  struct Case {
    const char* label;
    std::vector<const char*> capacities;
    CoreCounts expected;
  };
  const Case cases[] = {
      {"two kinds", {"530", "530", "530", "530", "1024", "1024"}, {2, 4}},
      {"three kinds: only the least is efficient", {"325", "325", "828", "828", "1024"}, {3, 2}},
      {"one kind", {"1024", "1024"}, {2, 0}},
      {"favoured cores of one kind", {"1009", "1024", "980"}, {3, 0}},
      {"small differences among the least", {"250", "260", "1024"}, {1, 2}},
      {"one without a figure", {"250", "text", "1024"}, {3, 0}},
      {"figures out of range", {"250", "9223372036854775807"}, {2, 0}},
      {"negative figures", {"-250", "1024"}, {2, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    tree.remove("sys");
    int cpu = 0;
    for (const char* capacity : c.capacities) {
      put(cpu, std::to_string(cpu), capacity);
      ++cpu;
    }
    EXPECT_EQ(counts(), c.expected);
  }
}

TEST_F(CpuCoresTest, CoresThatAreOfflineAndStrangeNamesDoNotCount) {
  put(0, "0");
  tree.write("sys/devices/system/cpu/cpu1/online", "0\n");
  tree.write("sys/devices/system/cpu/cpufreq/topology/core_cpus_list", "9\n");
  tree.write("sys/devices/system/cpu/cpu-1/topology/core_cpus_list", "8\n");
  EXPECT_EQ(counts(), (CoreCounts{1, 0}));
}

TEST_F(CpuCoresTest, WithoutTopologyThereIsNoCount) {
  tree.write("sys/devices/system/cpu/cpu0/topology/core_cpus_list", "");
  EXPECT_EQ(counts(), std::nullopt);
}

TEST_F(CpuCoresTest, OnAHybridChipCalmMeansItsEfficiencyCores) {
  for (int cpu = 0; cpu < 4; ++cpu) put(cpu, fmt::format("{}-{}", cpu / 2 * 2, cpu / 2 * 2 + 1));
  for (int cpu = 4; cpu < 8; ++cpu) put(cpu, fmt::format("{}", cpu));
  tree.write("sys/devices/cpu_atom/cpus", "4-7\n");
  EXPECT_EQ(coresOf(tree.root()).calm, (std::vector<int>{4, 5, 6, 7}));
  EXPECT_EQ(coresOf(tree.root()).online, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(CpuCoresTest, EfficiencyCoresMayStandFirst) {
  for (int cpu = 0; cpu < 4; ++cpu) put(cpu, fmt::format("{}", cpu), cpu < 2 ? "400" : "1024");
  EXPECT_EQ(coresOf(tree.root()).calm, (std::vector<int>{0, 1}));
}

TEST_F(CpuCoresTest, WhereAllCoresAreAlikeCalmMeansTheLastQuarterWithAllThreads) {
  for (int cpu = 0; cpu < 16; ++cpu) put(cpu, fmt::format("{},{}", cpu % 8, cpu % 8 + 8), "1024");
  EXPECT_EQ(coresOf(tree.root()).calm, (std::vector<int>{6, 7, 14, 15}));
}

TEST_F(CpuCoresTest, OneCoreAtLeastIsForCalm) {
  put(0, "0");
  EXPECT_EQ(coresOf(tree.root()).calm, std::vector<int>{0});
  put(1, "1");
  EXPECT_EQ(coresOf(tree.root()).calm, std::vector<int>{1});
  put(2, "2");
  EXPECT_EQ(coresOf(tree.root()).calm, std::vector<int>{2});
}

TEST_F(CpuCoresTest, WithoutTopologyThereAreNoCores) {
  EXPECT_TRUE(coresOf(tree.root()).calm.empty());
  EXPECT_TRUE(coresOf(tree.root()).online.empty());
}

}  // namespace
}  // namespace embrix
