#include "darwin/energy_channel_name.h"

#include <gtest/gtest.h>

#include <string>

namespace embrix {
namespace {

struct BlockCase {
  std::string_view name;
  std::string_view block;
  BlockRank rank;
};

TEST(EnergyChannelNameTest, BlocksOfEveryChip) {
  const BlockCase cases[] = {
      {"CPU Energy", "CPU Energy", BlockRank::whole},
      {"DIE_0_CPU Energy", "CPU Energy", BlockRank::wholeOfDie},
      {"DIE_12_CPU Energy", "CPU Energy", BlockRank::wholeOfDie},
      {"EACC_CPU", "CPU Energy", BlockRank::cluster},
      {"PACC1_CPU", "CPU Energy", BlockRank::cluster},
      {"DIE_1_PACC0_CPU", "CPU Energy", BlockRank::cluster},
      {"ECPU", "CPU Energy", BlockRank::cluster},
      {"PCPU", "CPU Energy", BlockRank::cluster},
      {"MCPU0", "CPU Energy", BlockRank::cluster},
      {"GPU Energy", "GPU Energy", BlockRank::whole},
      {"GPU", "GPU", BlockRank::whole},
      {"GPU0", "GPU", BlockRank::numbered},
      {"GPU0_0", "GPU", BlockRank::numberedTwice},
      {"ANE", "ANE", BlockRank::whole},
      {"ANE0", "ANE", BlockRank::numbered},
      {"ANE0_1", "ANE", BlockRank::numberedTwice},
      {"DIE_1_ANE", "ANE", BlockRank::wholeOfDie},
      {"DIE_1_ANE0", "ANE", BlockRank::numberedOfDie},
      {"DIE_1_ANE0_1", "ANE", BlockRank::numberedTwiceOfDie},
      {"DRAM0", "DRAM", BlockRank::numbered},
      {"AMCC0_1", "AMCC", BlockRank::numberedTwice},
      {"DCS0", "DCS", BlockRank::numbered},
      {"DISP0", "DISP", BlockRank::numbered},
      {"DISPEXT", "DISPEXT", BlockRank::whole},
      {"DISPEXT3", "DISPEXT", BlockRank::numbered},
  };
  for (const auto& [name, block, rank] : cases) {
    const auto found = energyBlockOf(name);
    ASSERT_TRUE(found) << name;
    EXPECT_EQ(kEnergyBlocks[found->block], block) << name;
    EXPECT_EQ(found->rank, rank) << name;
    EXPECT_EQ(energyCoreOf(name), std::nullopt) << name;
  }
}

TEST(EnergyChannelNameTest, ClustersHaveALevelAndPerhapsANumber) {
  struct ClusterCase {
    std::string_view name;
    ClusterName cluster;
  };
  const ClusterCase cases[] = {
      {"EACC_CPU", {'E', kUnnumbered}},       {"PACC1_CPU", {'P', 1}}, {"PCPU", {'P', kUnnumbered}},
      {"DIE_1_PACC0_CPU", {'P', 0}},          {"MCPU0", {'M', 0}},     {"MCPU", {'M', kUnnumbered}},
      {"DIE_0_MACC_CPU", {'M', kUnnumbered}},
  };
  for (const auto& [name, cluster] : cases) {
    const auto found = energyBlockOf(name);
    ASSERT_TRUE(found) << name;
    EXPECT_EQ(found->cluster, cluster) << name;
  }
}

struct CoreCase {
  std::string_view name;
  CoreName core;
};

TEST(EnergyChannelNameTest, CoresOfEveryChip) {
  const CoreCase cases[] = {
      {"EACC_CPU3", {'E', CoreForm::accelerated, kNoDie, 0, 3}},
      {"PACC1_CPU0", {'P', CoreForm::accelerated, kNoDie, 1, 0}},
      {"PACC12_CPU34", {'P', CoreForm::accelerated, kNoDie, 12, 34}},
      {"DIE_0_EACC_CPU1", {'E', CoreForm::acceleratedOfDie, 0, 0, 1}},
      {"DIE_1_PACC1_CPU3", {'P', CoreForm::acceleratedOfDie, 1, 1, 3}},
      {"ECPU0", {'E', CoreForm::plain, kNoDie, 0, 0}},
      {"PCPU3", {'P', CoreForm::plain, kNoDie, 0, 3}},
      {"DIE_1_PCPU3", {'P', CoreForm::plainOfDie, 1, 0, 3}},
      {"MCPU1_5", {'M', CoreForm::paired, kNoDie, 1, 5}},
      {"PACC_0", {'P', CoreForm::paired, kNoDie, 0, 0}},
      {"PACC1_2", {'P', CoreForm::paired, kNoDie, 1, 2}},
      {"DIE_1_MCPU0_2", {'M', CoreForm::pairedOfDie, 1, 0, 2}},
      {"MACC0_CPU1", {'M', CoreForm::accelerated, kNoDie, 0, 1}},
  };
  for (const auto& [name, core] : cases) {
    EXPECT_EQ(energyCoreOf(name), core) << name;
    EXPECT_EQ(energyBlockOf(name), std::nullopt) << name;
  }
}

TEST(EnergyChannelNameTest, WhatIsNeitherBlockNorCore) {
  for (const std::string_view name : {"",
                                      "EACC_CPM",
                                      "PACC0_CPM",
                                      "ECPM",
                                      "PCPM",
                                      "GPU SRAM",
                                      "GPU SRAM0",
                                      "GPU SRAM0_0",
                                      "ISP0",
                                      "AVE0",
                                      "MSR0_1",
                                      "ECPUDTL00",
                                      "PCPU1DTL0a",
                                      "PCPUDTL3e",
                                      "apciec0 Energy",
                                      "PCIe Port 0 Energy",
                                      "cpu energy",
                                      "CPU Energy ",
                                      " CPU Energy",
                                      "DIE_CPU Energy",
                                      "DIE_0CPU Energy",
                                      "DIE__ANE",
                                      "DIE_",
                                      "DIE_0_",
                                      "ANE_0",
                                      "ANE0_",
                                      "ANE0_1_2",
                                      "ANEX",
                                      "XACC0_CPU0",
                                      "ACC0_CPU0",
                                      "PACC0_CPUx",
                                      "PACC0_CPU0 ",
                                      "PACC-1_CPU0",
                                      "PACC0_",
                                      "PACC",
                                      "PACC0",
                                      "MCPU0_",
                                      "MCPU0_1x",
                                      "CPU",
                                      "E",
                                      "SOC_AON"}) {
    EXPECT_EQ(energyBlockOf(name), std::nullopt) << name;
    EXPECT_EQ(energyCoreOf(name), std::nullopt) << name;
  }
}

TEST(EnergyChannelNameTest, ANumberTooLargeToBeOneCountsAsZero) {
  EXPECT_EQ(energyCoreOf("PACC99999999999999999999_CPU7"),
            (CoreName{'P', CoreForm::accelerated, kNoDie, 0, 7}));
  EXPECT_EQ(energyCoreOf("EACC2_CPU99999999999999999999"),
            (CoreName{'E', CoreForm::accelerated, kNoDie, 2, 0}));
}

}  // namespace
}  // namespace embrix
