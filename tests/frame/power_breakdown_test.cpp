#include "frame/power_breakdown.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace embrix {
namespace {

using Channels = std::vector<EnergyChannel>;

EnergyChannel joules(std::string name, std::int64_t value = 1) {
  return {.name = std::move(name), .unit = "J", .value = value};
}

std::vector<std::string> coreNames(const PowerBreakdown& breakdown) {
  std::vector<std::string> names;
  for (const auto& core : breakdown.cores) names.push_back(core.name);
  return names;
}

TEST(PowerBreakdownTest, NoTimeNoWatts) {
  const Channels channels = {joules("CPU Energy", 5), joules("PACC0_CPU0")};
  for (const double seconds : {0.0, -0.0, -2.0, std::nan("")}) {
    EXPECT_EQ(PowerBreakdown::parse(channels, seconds), PowerBreakdown::empty()) << seconds;
  }
}

TEST(PowerBreakdownTest, NoChannelsNoWatts) {
  EXPECT_EQ(PowerBreakdown::parse({}, 2), PowerBreakdown::empty());
}

TEST(PowerBreakdownTest, UnitsBecomeWatts) {
  struct Case {
    std::string unit;
    std::int64_t value;
    double watts;
  };
  for (const auto& [unit, value, watts] : {
           Case{"nJ", 2'000'000'000, 1.0},
           Case{"uJ", 2'000'000, 1.0},
           Case{"\xC2\xB5J", 2'000'000, 1.0},  // U+00B5, the micro sign
           Case{"mJ", 2000, 1.0},
           Case{"J", 2, 1.0},
           Case{"J", -2, -1.0},
           Case{"\xCE\xBCJ", 2'000'000, 0},  // U+03BC, the Greek letter
           Case{"NJ", 2'000'000'000, 0},
           Case{"kJ", 2, 0},
           Case{"W", 2, 0},
           Case{"", 2, 0},
       }) {
    const Channels channels = {{.name = "CPU Energy", .unit = unit, .value = value}};
    EXPECT_EQ(PowerBreakdown::parse(channels, 2).cpu, watts) << unit;
  }
}

TEST(PowerBreakdownTest, EachBlockIsMadeOfItsChannels) {
  const Channels channels = {joules("CPU Energy", 1), joules("GPU Energy", 2), joules("ANE", 4),
                             joules("DRAM", 8),       joules("AMCC", 16),      joules("DCS", 32),
                             joules("DISP", 64),      joules("DISPEXT", 128),  joules("ISP", 256)};
  EXPECT_EQ(PowerBreakdown::parse(channels, 1),
            (PowerBreakdown{
                .cpu = 1, .gpu = 2, .neuralEngine = 4, .memory = 56, .display = 192, .cores = {}}));
}

TEST(PowerBreakdownTest, BlocksThatAreNotThereAreZero) {
  const PowerBreakdown expected{
      .cpu = 0, .gpu = 0, .neuralEngine = 0, .memory = 8, .display = 0, .cores = {}};
  EXPECT_EQ(PowerBreakdown::parse({joules("AMCC", 8)}, 1), expected);
}

TEST(PowerBreakdownTest, ChannelsOfOneNameSum) {
  const Channels channels = {joules("CPU Energy", 1),
                             joules("PACC0_CPU0", 3),
                             {.name = "CPU Energy", .unit = "mJ", .value = 500},
                             joules("PACC0_CPU0", 4)};
  const auto breakdown = PowerBreakdown::parse(channels, 1);
  EXPECT_EQ(breakdown.cpu, 1.5);
  ASSERT_EQ(breakdown.cores.size(), 1u);
  EXPECT_EQ(breakdown.cores[0].watts, 7);
}

TEST(PowerBreakdownTest, GPUEnergyWinsOverGPU) {
  struct Case {
    std::string label;
    Channels channels;
    double watts;
  };
  for (const auto& [label, channels, watts] : {
           Case{"both", {joules("GPU", 7), joules("GPU Energy", 2)}, 2},
           Case{"GPU alone", {joules("GPU", 7)}, 7},
           Case{"a zero is there", {joules("GPU", 7), joules("GPU Energy", 0)}, 0},
           Case{"an unknown unit is there",
                {joules("GPU", 7), {.name = "GPU Energy", .unit = "cal", .value = 2}},
                0},
           Case{"neither", {joules("GPU SRAM", 7)}, 0},
       }) {
    EXPECT_EQ(PowerBreakdown::parse(channels, 1).gpu, watts) << label;
  }
}

TEST(PowerBreakdownTest, NamesOfCores) {
  struct Case {
    std::string name;
    bool isCore;
  };
  for (const auto& [name, isCore] : {
           Case{"EACC_CPU0", true},
           Case{"EACC_CPU3", true},
           Case{"PACC_CPU0", true},
           Case{"PACC0_CPU0", true},
           Case{"PACC12_CPU34", true},
           Case{"EACC007_CPU007", true},
           Case{"ECPU", false},
           Case{"ECPU0", false},
           Case{"EACC_CPU", false},
           Case{"PACC0_CPU", false},
           Case{"EACC_CPM", false},
           Case{"EACC_CPU0 ", false},
           Case{" EACC_CPU0", false},
           Case{"EACC_CPU0x", false},
           Case{"EACC_CPU-1", false},
           Case{"EACC-1_CPU0", false},
           Case{"EACC_CPU+1", false},
           Case{"SACC_CPU0", false},
           Case{"eACC_CPU0", false},
           Case{"PACC0_CPU0\n", false},
           Case{"DIE_0_EACC_CPU0", false},
           Case{"PACC_0", false},
           Case{"PACC", false},
           Case{"P", false},
           Case{"", false},
           Case{std::string("EACC_CPU0\0", 10), false},
           Case{"EACC_CPU\xD9\xA3", false},  // the Arabic digit three
       }) {
    EXPECT_EQ(PowerBreakdown::parse({joules(name)}, 1).cores.size(), isCore ? 1u : 0u) << name;
  }
}

TEST(PowerBreakdownTest, CoresAreNumberedByTheirPlaceInTheOrder) {
  struct Case {
    std::string label;
    std::vector<std::string> channels;  // the n-th uses n watts, counted from 1
    std::vector<PowerBreakdown::Core> cores;
  };
  for (const auto& [label, channels, cores] : {
           Case{"by cluster before index",
                {"PACC1_CPU0", "PACC0_CPU2"},
                {{"P0", true, 2}, {"P1", true, 1}}},
           Case{"performance cores first",
                {"EACC_CPU0", "EACC_CPU1", "PACC0_CPU0"},
                {{"P0", true, 3}, {"E0", false, 1}, {"E1", false, 2}}},
           Case{"an empty cluster is cluster 0",
                {"EACC1_CPU0", "EACC_CPU3"},
                {{"E0", false, 2}, {"E1", false, 1}}},
           Case{"by number and not by text",
                {"PACC0_CPU10", "PACC0_CPU9", "PACC10_CPU0", "PACC9_CPU0"},
                {{"P0", true, 2}, {"P1", true, 1}, {"P2", true, 4}, {"P3", true, 3}}},
           Case{"a number beyond 64 bits is 0",
                {"EACC_CPU1", "EACC_CPU99999999999999999999"},
                {{"E0", false, 2}, {"E1", false, 1}}},
           Case{"two names of one place stay two cores, by name",
                {"PACC_CPU0", "PACC0_CPU00", "PACC0_CPU0"},
                {{"P0", true, 3}, {"P1", true, 2}, {"P2", true, 1}}},
       }) {
    Channels given;
    for (const auto& name : channels) {
      given.push_back(joules(name, static_cast<std::int64_t>(given.size() + 1)));
    }
    EXPECT_EQ(PowerBreakdown::parse(given, 1).cores, cores) << label;
  }
}

TEST(PowerBreakdownTest, ACoreOfAnUnknownUnitIsStillACore) {
  const auto breakdown =
      PowerBreakdown::parse({{.name = "PACC0_CPU0", .unit = "ticks", .value = 9}}, 1);
  EXPECT_EQ(breakdown.cores, (std::vector<PowerBreakdown::Core>{{"P0", true, 0}}));
}

TEST(PowerBreakdownTest, TheLargestCountersStayFinite) {
  constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
  const auto breakdown = PowerBreakdown::parse(
      {joules("CPU Energy", kLargest), joules("CPU Energy", kLargest), joules("ANE", kSmallest)},
      0.001);
  EXPECT_DOUBLE_EQ(breakdown.cpu, 2 * std::ldexp(1, 63) / 0.001);
  EXPECT_DOUBLE_EQ(breakdown.neuralEngine, -std::ldexp(1, 63) / 0.001);
}

TEST(PowerBreakdownTest, ThousandsOfCoresAreNumberedInOrder) {
  Channels channels;
  for (int i = 5000; i-- > 0;) channels.push_back(joules("PACC_CPU" + std::to_string(i), i));
  const auto breakdown = PowerBreakdown::parse(channels, 1);
  ASSERT_EQ(breakdown.cores.size(), 5000u);
  EXPECT_EQ(breakdown.cores[4321], (PowerBreakdown::Core{"P4321", true, 4321}));
  EXPECT_EQ(coreNames(breakdown).front(), "P0");
}

}  // namespace
}  // namespace embrix
