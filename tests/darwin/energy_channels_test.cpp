#include "darwin/energy_channels.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <string>

#include "fakes/captures.h"
#include "frame/power_breakdown.h"

namespace embrix {
namespace {

constexpr std::int64_t kNoValue = std::numeric_limits<std::int64_t>::min();

// Over one second, so that joules are watts.
PowerBreakdown watts(const std::vector<EnergyChannel>& channels) {
  return PowerBreakdown::parse(normalizedChannels(channels), 1);
}

std::vector<EnergyChannel> millijoules(
    std::initializer_list<std::pair<std::string, std::int64_t>> values) {
  std::vector<EnergyChannel> channels;
  for (const auto& [name, value] : values) channels.push_back({name, "mJ", value});
  return channels;
}

// A capture: a comment, then name, unit and perhaps value in a line each, tabs between. A channel
// without a value gets one joule, in whatever unit it counts.
std::vector<EnergyChannel> channelsOf(const std::string& table) {
  const std::map<std::string, std::int64_t> joule = {
      {"mJ", 1000}, {"uJ", 1'000'000}, {"nJ", 1'000'000'000}};
  std::vector<EnergyChannel> channels;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    std::istringstream fields(line);
    EnergyChannel channel;
    std::string value;
    std::getline(fields, channel.name, '\t');
    std::getline(fields, channel.unit, '\t');
    std::getline(fields, value, '\t');
    channel.value = value.empty() ? joule.at(channel.unit) : std::stoll(value);
    channels.push_back(channel);
  }
  return channels;
}

// One line of a table for each name.
std::string table(std::string_view unit, std::initializer_list<std::string_view> names) {
  std::string lines;
  for (const std::string_view name : names) {
    lines.append(name).append("\t").append(unit).append("\n");
  }
  return lines;
}

std::vector<double> wattsOf(const std::vector<PowerBreakdown::Core>& cores, bool performance) {
  std::vector<double> result;
  for (const auto& core : cores) {
    if (core.isPerformance == performance) result.push_back(core.watts);
  }
  return result;
}

using Watts = std::vector<double>;

const std::string kM1Max =
    "# every channel of the chip\n" + table("uJ", {"PCIe Port 0 Energy", "apciec0 Energy"}) +
    table("mJ", {"EACC_CPU0",  "EACC_CPU1",  "PACC0_CPU0", "PACC0_CPU1", "PACC0_CPU2", "PACC0_CPU3",
                 "PACC1_CPU0", "PACC1_CPU1", "PACC1_CPU2", "PACC1_CPU3", "EACC_CPM",   "PACC0_CPM",
                 "PACC1_CPM",  "EACC_CPU",   "PACC0_CPU",  "PACC1_CPU",  "CPU Energy", "ECPUDTL00",
                 "PCPUDTL0a",  "PCPU1DTL00", "GPU0",       "GPU SRAM0",  "ANE0",       "ISP0",
                 "AVE0",       "MSR0",       "DCS0",       "DRAM0",      "AMCC0"}) +
    table("nJ", {"GPU Energy"});

// One joule in each of 162 channels. The clusters, their managers and the tables beside each core
// are told in `CPU Energy` already, the GPU's millijoules in `GPU Energy`.
TEST(EnergyChannelsTest, EveryChannelOfAnM1Max) {
  const PowerBreakdown power = watts(channelsOf(captureOr("03_ioreport/m1_max.tsv", kM1Max)));
  EXPECT_DOUBLE_EQ(power.cpu, 1);
  EXPECT_DOUBLE_EQ(power.gpu, 1);
  EXPECT_DOUBLE_EQ(power.neuralEngine, 1);
  EXPECT_DOUBLE_EQ(power.memory, 3);
  EXPECT_DOUBLE_EQ(power.display, 0);
  EXPECT_EQ(wattsOf(power.cores, true), Watts(8, 1.0));
  EXPECT_EQ(wattsOf(power.cores, false), Watts(2, 1.0));
}

const std::string kM1Ultra =
    table("mJ", {"DIE_0_EACC_CPU0",  "DIE_0_EACC_CPU1",  "DIE_0_PACC0_CPU0", "DIE_0_PACC0_CPU1",
                 "DIE_0_PACC0_CPU2", "DIE_0_PACC0_CPU3", "DIE_0_PACC1_CPU0", "DIE_0_PACC1_CPU1",
                 "DIE_0_PACC1_CPU2", "DIE_0_PACC1_CPU3", "DIE_0_EACC_CPM",   "DIE_0_PACC0_CPM",
                 "DIE_0_PACC1_CPM",  "DIE_0_EACC_CPU",   "DIE_0_PACC0_CPU",  "DIE_0_PACC1_CPU",
                 "DIE_0_CPU Energy", "DIE_1_EACC_CPU0",  "DIE_1_EACC_CPU1",  "DIE_1_PACC0_CPU0",
                 "DIE_1_PACC0_CPU1", "DIE_1_PACC0_CPU2", "DIE_1_PACC0_CPU3", "DIE_1_PACC1_CPU0",
                 "DIE_1_PACC1_CPU1", "DIE_1_PACC1_CPU2", "DIE_1_PACC1_CPU3", "DIE_1_EACC_CPM",
                 "DIE_1_PACC0_CPM",  "DIE_1_PACC1_CPM",  "DIE_1_EACC_CPU",   "DIE_1_PACC0_CPU",
                 "DIE_1_PACC1_CPU",  "DIE_1_CPU Energy", "ECPUDTL00",        "PCPUDTL0a",
                 "ECPUDTL00",        "PCPUDTL0a",        "GPU0_0",           "GPU SRAM0_0",
                 "ANE0_0",           "ISP0_0",           "AVE0_0",           "MSR0_0",
                 "DCS0_0",           "DRAM0_0",          "AMCC0_0",          "ANE0_1",
                 "ISP0_1",           "AVE0_1",           "MSR0_1",           "DCS0_1",
                 "DRAM0_1",          "AMCC0_1"}) +
    table("uJ", {"apciec2 Energy", "PCIe Port 3 Energy"}) + table("nJ", {"GPU Energy"});

// Two dies, one joule in each of 321 channels: every block counts twice, but the GPU once.
TEST(EnergyChannelsTest, EveryChannelOfAnM1Ultra) {
  const PowerBreakdown power =
      watts(channelsOf(captureOr("03_ioreport/m1_ultra_macos27.0_26A428.tsv", kM1Ultra)));
  EXPECT_DOUBLE_EQ(power.cpu, 2);
  EXPECT_DOUBLE_EQ(power.gpu, 1);
  EXPECT_DOUBLE_EQ(power.neuralEngine, 2);
  EXPECT_DOUBLE_EQ(power.memory, 6);
  EXPECT_DOUBLE_EQ(power.display, 0);
  EXPECT_EQ(wattsOf(power.cores, true), Watts(16, 1.0));
  EXPECT_EQ(wattsOf(power.cores, false), Watts(4, 1.0));
}

// A load on one core: the cores' 1673 mJ, the clusters' 1715 and the managers' 28 are all within
// the 1701 of `CPU Energy`.
TEST(EnergyChannelsTest, AnM1MaxUnderLoad) {
  const PowerBreakdown power = watts(channelsOf(
      captureOr("03_ioreport/zeus_m1_max_delta.tsv",
                "EACC_CPU0\tmJ\t4\nEACC_CPU1\tmJ\t2\nPACC0_CPU0\tmJ\t1651\nPACC0_CPU1\tmJ\t14\n"
                "PACC0_CPU2\tmJ\t2\nPACC0_CPU3\tmJ\t0\nPACC1_CPU0\tmJ\t0\nPACC1_CPU1\tmJ\t0\n"
                "PACC1_CPU2\tmJ\t0\nPACC1_CPU3\tmJ\t0\nEACC_CPU\tmJ\t10\nPACC0_CPU\tmJ\t1700\n"
                "PACC1_CPU\tmJ\t5\nEACC_CPM\tmJ\t2\nPACC0_CPM\tmJ\t20\nPACC1_CPM\tmJ\t6\n"
                "CPU Energy\tmJ\t1701\nGPU SRAM0\tmJ\t0\nANE0\tmJ\t0\nDRAM0\tmJ\t358\n"
                "GPU Energy\tnJ\t9104980\n")));
  EXPECT_DOUBLE_EQ(power.cpu, 1.701);
  EXPECT_DOUBLE_EQ(power.gpu, 0.00910498);
  EXPECT_DOUBLE_EQ(power.neuralEngine, 0);
  EXPECT_DOUBLE_EQ(power.memory, 0.358);
  EXPECT_EQ(wattsOf(power.cores, true), (Watts{1.651, 0.014, 0.002, 0, 0, 0, 0, 0}));
  EXPECT_EQ(wattsOf(power.cores, false), (Watts{0.004, 0.002}));
}

TEST(EnergyChannelsTest, AnM4UnderLoad) {
  const PowerBreakdown power = watts(channelsOf(captureOr(
      "03_ioreport/zeus_m4_delta.tsv",
      "ECPU0\tmJ\t2\nECPU1\tmJ\t1\nECPU2\tmJ\t0\nECPU3\tmJ\t0\nECPU4\tmJ\t0\nECPU5\tmJ\t0\n"
      "PCPU0\tmJ\t47\nPCPU1\tmJ\t1\nPCPU2\tmJ\t2104\nPCPU3\tmJ\t3\nECPU\tmJ\t8\nPCPU\tmJ\t2200\n"
      "ECPM\tmJ\t2\nPCPM\tmJ\t16\nCPU Energy\tmJ\t2174\nGPU SRAM\tmJ\t0\nANE\tmJ\t0\n"
      "DRAM\tmJ\t61\nGPU Energy\tnJ\t0\n")));
  EXPECT_DOUBLE_EQ(power.cpu, 2.174);
  EXPECT_DOUBLE_EQ(power.gpu, 0);
  EXPECT_DOUBLE_EQ(power.neuralEngine, 0);
  EXPECT_DOUBLE_EQ(power.memory, 0.061);
  EXPECT_EQ(wattsOf(power.cores, true), (Watts{0.047, 0.001, 2.104, 0.003}));
  EXPECT_EQ(wattsOf(power.cores, false), (Watts{0.002, 0.001, 0, 0, 0, 0}));
}

// Six cores that the system calls "Super" in one cluster, twelve called "Performance" in two: its
// performance levels 0 and 1.
TEST(EnergyChannelsTest, AChipOfSuperAndPerformanceCores) {
  std::vector<EnergyChannel> channels = millijoules({{"MCPU0", 700},
                                                     {"MCPU1", 80},
                                                     {"PCPU", 5000},
                                                     {"CPU Energy", 5800},
                                                     {"GPU0", 3},
                                                     {"ANE0", 40},
                                                     {"AMCC0", 100},
                                                     {"DCS0", 200},
                                                     {"DRAM0", 300},
                                                     {"DISP0", 500},
                                                     {"DISPEXT0", 20},
                                                     {"DISPEXT1", 7}});
  for (int i = 0; i < 6; ++i) {
    channels.push_back({"MCPU0_" + std::to_string(i), "mJ", 100 + i});
    channels.push_back({"MCPU1_" + std::to_string(i), "mJ", 10 + i});
    channels.push_back({"PACC_" + std::to_string(i), "mJ", 800 + i});
  }
  channels.push_back({"GPU Energy", "nJ", 2'500'000'000});
  const PowerBreakdown power = watts(channels);
  EXPECT_DOUBLE_EQ(power.cpu, 5.8);
  EXPECT_DOUBLE_EQ(power.gpu, 2.5);
  EXPECT_DOUBLE_EQ(power.neuralEngine, 0.04);
  EXPECT_DOUBLE_EQ(power.memory, 0.6);
  EXPECT_DOUBLE_EQ(power.display, 0.527);
  EXPECT_EQ(wattsOf(power.cores, true), (Watts{0.8, 0.801, 0.802, 0.803, 0.804, 0.805}));
  EXPECT_EQ(wattsOf(power.cores, false), (Watts{0.1, 0.101, 0.102, 0.103, 0.104, 0.105, 0.01, 0.011,
                                                0.012, 0.013, 0.014, 0.015}));
}

TEST(EnergyChannelsTest, NamesOfTheFirstChipsStay) {
  const std::vector<EnergyChannel> channels = {
      {"CPU Energy", "mJ", 1},  {"GPU Energy", "nJ", 2},  {"GPU", "mJ", 3},
      {"ANE", "mJ", 4},         {"DRAM", "uJ", 5},        {"AMCC", "µJ", 6},
      {"DCS", "J", 7},          {"DISP", "mJ", 8},        {"DISPEXT", "mJ", 9},
      {"EACC0_CPU0", "mJ", 10}, {"PACC0_CPU0", "mJ", 11}, {"PACC1_CPU3", "mJ", 12}};
  EXPECT_EQ(normalizedChannels(channels), channels);
}

TEST(EnergyChannelsTest, AWholeAndItsPartsAreNeverSummed) {
  struct Case {
    const char* label;
    std::vector<EnergyChannel> channels;
    double expectedWatts;
  };
  const Case cpu[] = {
      {"a chip and its dies",
       millijoules({{"DIE_0_CPU Energy", 1}, {"CPU Energy", 3000}, {"DIE_1_CPU Energy", 2}}), 3},
      {"dies and their clusters",
       millijoules({{"DIE_0_PACC0_CPU", 1}, {"DIE_0_CPU Energy", 1000}, {"DIE_1_CPU Energy", 500}}),
       1.5},
      {"clusters and their cores",
       millijoules({{"EACC_CPU", 200}, {"PACC0_CPU", 1000}, {"PACC0_CPU0", 999}}), 1.2},
      {"new clusters and their cores",
       millijoules({{"MCPU0", 200}, {"PCPU", 1000}, {"MCPU0_0", 7}, {"PACC_0", 7}}), 1.2},
      {"cores alone", millijoules({{"EACC_CPU0", 200}, {"PACC0_CPU0", 1000}}), 1.2},
      {"cores and their managers", millijoules({{"PCPM", 5}, {"PCPU0", 1000}}), 1},
      {"clusters of one level and cores of another",
       millijoules({{"PCPU", 1000}, {"PCPU0", 999}, {"ECPU0", 30}, {"ECPU1", 20}}), 1.05},
      {"a silent cluster leaves its level to the cores",
       millijoules({{"PCPU", 1000}, {"PCPU0", 999}, {"ECPU", kNoValue}, {"ECPU0", 50}}), 1.05},
      {"numbered clusters beside their cores",
       millijoules(
           {{"MCPU0", 200}, {"PCPU0", 700}, {"PCPU1", 300}, {"PCPU0_0", 7}, {"PCPU1_0", 7}}),
       1.2},
      {"a first cluster without a number",
       millijoules({{"PCPU", 700}, {"PCPU1", 300}, {"PCPU0_0", 7}, {"PCPU1_0", 7}}), 1},
      {"a level and its clusters",
       millijoules({{"PCPU", 1000}, {"PCPU0", 700}, {"PCPU1", 300}, {"PCPU0_0", 7}}), 1},
      {"levels of dies and their clusters",
       millijoules({{"DIE_0_EACC_CPU", 10},
                    {"DIE_1_EACC_CPU", 20},
                    {"DIE_0_EACC0_CPU", 10},
                    {"DIE_1_EACC0_CPU", 20}}),
       0.03},
  };
  for (const auto& [label, channels, expected] : cpu) {
    EXPECT_DOUBLE_EQ(watts(channels).cpu, expected) << label;
  }
  const Case memory[] = {
      {"whole", millijoules({{"DRAM", 1000}, {"DRAM0", 600}, {"DRAM0_1", 400}}), 1},
      {"numbered", millijoules({{"DRAM0", 600}, {"DRAM1", 300}, {"DRAM0_1", 400}}), 0.9},
      {"dies", millijoules({{"DRAM0_0", 600}, {"DRAM0_1", 400}}), 1},
      {"prefixed dies", millijoules({{"DIE_0_DRAM0", 600}, {"DIE_1_DRAM0", 400}}), 1},
      {"whole beside dies", millijoules({{"DIE_0_DRAM0", 600}, {"DRAM0", 1000}}), 1},
      {"each kind by itself", millijoules({{"DRAM", 1000}, {"AMCC0", 500}, {"DCS0_0", 250}}), 1.75},
  };
  for (const auto& [label, channels, expected] : memory) {
    EXPECT_DOUBLE_EQ(watts(channels).memory, expected) << label;
  }
}

TEST(EnergyChannelsTest, GpuEnergyIsTheWholeOfTheGpu) {
  EXPECT_DOUBLE_EQ(watts(millijoules({{"GPU Energy", 2000}, {"GPU", 1}, {"GPU0", 5}})).gpu, 2);
  EXPECT_DOUBLE_EQ(watts(millijoules({{"GPU", 2000}, {"GPU0", 5}})).gpu, 2);
  EXPECT_DOUBLE_EQ(watts(millijoules({{"GPU0", 2000}, {"GPU SRAM0", 5}})).gpu, 2);
  EXPECT_DOUBLE_EQ(watts(millijoules({{"GPU0_0", 2000}, {"GPU0_1", 500}})).gpu, 2.5);
}

TEST(EnergyChannelsTest, AChannelWithoutAValueIsNoZero) {
  EXPECT_TRUE(normalizedChannels(millijoules({{"ANE", kNoValue}, {"PACC_0", kNoValue}})).empty());
  EXPECT_EQ(normalizedChannels(millijoules({{"ANE", 0}})), millijoules({{"ANE", 0}}));
}

TEST(EnergyChannelsTest, AWholeWithoutAValueLeavesItToItsParts) {
  EXPECT_DOUBLE_EQ(
      watts(millijoules(
                {{"CPU Energy", kNoValue}, {"DIE_0_CPU Energy", 1000}, {"DIE_1_CPU Energy", 500}}))
          .cpu,
      1.5);
}

TEST(EnergyChannelsTest, ACounterThatRanBackwardsHasNoValue) {
  EXPECT_EQ(watts(millijoules({{"CPU Energy", -5000}, {"ECPU0", -1}})), PowerBreakdown::empty());
}

TEST(EnergyChannelsTest, ASilentCoreDoesNotMakeItsClusterACore) {
  const PowerBreakdown power = watts(millijoules({{"PCPU0", 900}, {"PCPU0_0", kNoValue}}));
  EXPECT_TRUE(power.cores.empty());
}

TEST(EnergyChannelsTest, ASilentClusterKeepsItsNumber) {
  EXPECT_EQ(normalizedChannels(
                millijoules({{"CPU Energy", 9}, {"PACC0_CPU0", kNoValue}, {"PACC1_CPU0", 9}})),
            millijoules({{"CPU Energy", 9}, {"PACC1_CPU0", 9}}));
}

// Without a prefix the dies' cores bear the same names.
TEST(EnergyChannelsTest, CoresThatRepeatAreThoseOfAnotherDie) {
  const PowerBreakdown power = watts(millijoules(
      {{"CPU Energy", 9}, {"PCPU0", 1000}, {"PCPU1", 2000}, {"PCPU0", 3000}, {"PCPU1", 4000}}));
  EXPECT_EQ(wattsOf(power.cores, true), (Watts{1, 2, 3, 4}));
}

TEST(EnergyChannelsTest, BlocksThatRepeatAreSummed) {
  EXPECT_DOUBLE_EQ(watts(millijoules({{"CPU Energy", 1000}, {"CPU Energy", 500}})).cpu, 1.5);
}

TEST(EnergyChannelsTest, PartsKeepTheirOwnUnits) {
  EXPECT_DOUBLE_EQ(
      watts({{"DIE_0_CPU Energy", "mJ", 1000}, {"DIE_1_CPU Energy", "uJ", 500'000}}).cpu, 1.5);
}

TEST(EnergyChannelsTest, BlanksAroundAUnitDoNotCount) {
  EXPECT_DOUBLE_EQ(watts({{"ANE0", " mJ     ", 1000}}).neuralEngine, 1);
  EXPECT_EQ(normalizedChannels({{"ANE0", "   ", 1}})[0].unit, "");
}

TEST(EnergyChannelsTest, WhatSaysNothingOfABlockIsLeftOut) {
  EXPECT_TRUE(
      normalizedChannels(millijoules({{"ISP0", 1}, {"PCIe Port 0 Energy", 1}, {"", 1}})).empty());
  EXPECT_TRUE(normalizedChannels({}).empty());
}

TEST(EnergyChannelsTest, EachIsKnownByTheChannelItComesFrom) {
  const auto channels = millijoules(
      {{"ISP0", 1}, {"DIE_0_PACC0_CPU1", 2}, {"ANE0", kNoValue}, {"DRAM0", 4}, {"PACC0_CPU", 5}});
  std::vector<std::pair<std::string, std::size_t>> sources;
  for (const NormalizedChannel& each : normalizedWithSources(channels)) {
    sources.emplace_back(each.channel.name, each.source);
  }
  EXPECT_EQ(sources, (std::vector<std::pair<std::string, std::size_t>>{
                         {"DRAM", 3}, {"CPU Energy", 4}, {"PACC0_CPU1", 1}}));
}

TEST(EnergyChannelsTest, AgainChangesNothing) {
  for (const std::string& chip : {kM1Max, kM1Ultra}) {
    const auto once = normalizedChannels(channelsOf(chip));
    EXPECT_EQ(normalizedChannels(once), once);
  }
}

TEST(EnergyChannelsTest, ValuesAtTheirEndsAreKept) {
  const std::int64_t most = std::numeric_limits<std::int64_t>::max();
  const auto channels =
      normalizedChannels({{"DIE_0_CPU Energy", "nJ", most}, {"DIE_1_CPU Energy", "nJ", most}});
  ASSERT_EQ(channels.size(), 2u);
  EXPECT_EQ(channels[0].value, most);
}

// Names made of the pieces that real ones are made of.
TEST(EnergyChannelsTest, AnyNamesGiveOnlyNamesThatAreKnown) {
  const char* pieces[] = {"DIE_",
                          "0",
                          "1",
                          "_",
                          "E",
                          "P",
                          "M",
                          "ACC",
                          "CPU",
                          "ANE",
                          "GPU",
                          " ",
                          "Energy",
                          "DISP",
                          "EXT",
                          "DTL",
                          "999999999999999"};
  std::mt19937 generator(3);
  for (int round = 0; round < 2000; ++round) {
    std::vector<EnergyChannel> channels;
    for (int i = 0; i < 20; ++i) {
      std::string name;
      for (auto n = generator() % 6; n > 0; --n) {
        name += pieces[generator() % std::size(pieces)];
      }
      channels.push_back({name, "mJ", static_cast<std::int64_t>(generator())});
    }
    const auto once = normalizedChannels(channels);
    EXPECT_EQ(normalizedChannels(once).size(), once.size());
  }
}

}  // namespace
}  // namespace embrix
