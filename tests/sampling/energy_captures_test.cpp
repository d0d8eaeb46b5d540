// Energy channels of real chips, as the library lists them. Beside each stand rows of the same kind
// and figures, for a run that is not given the captures.
#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "frame/power_breakdown.h"

namespace embrix {
namespace {

// Rows of name, unit and, where the capture has it, value, with a tab between each; 1 stands for a
// value that is not there. A line that begins with # is a remark.
std::vector<EnergyChannel> channelsOf(std::string_view text) {
  std::vector<EnergyChannel> channels;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const auto tab = line.find('\t');
    if (line.starts_with('#') || tab == std::string_view::npos) continue;
    const std::string_view rest = line.substr(tab + 1);
    EnergyChannel channel{.name = std::string(line.substr(0, tab)),
                          .unit = std::string(rest.substr(0, rest.find('\t'))),
                          .value = 1};
    if (const auto second = rest.find('\t'); second != std::string_view::npos) {
      std::from_chars(rest.data() + second + 1, rest.data() + rest.size(), channel.value);
    }
    channels.push_back(std::move(channel));
  }
  return channels;
}

// One core busy, 1701 mJ of the CPU in all, 9104980 nJ of the GPU. ANE0 and DRAM0 are names of this
// chip which a host translates; unasked, they are no blocks. The totals of clusters (EACC_CPU,
// PACC0_CPM) are no cores: that leaves 2 efficiency cores and 8 performance cores.
TEST(EnergyCapturesTest, DeltaOfAnM1Max) {
  const auto channels = channelsOf(captureOr("03_ioreport/zeus_m1_max_delta.tsv",
                                             "# remark\n"
                                             "EACC_CPU0\tmJ\t4\nEACC_CPU1\tmJ\t2\n"
                                             "PACC0_CPU0\tmJ\t1651\nPACC0_CPU1\tmJ\t14\n"
                                             "PACC0_CPU2\tmJ\t2\nPACC0_CPU3\tmJ\t0\n"
                                             "PACC1_CPU0\tmJ\t0\nPACC1_CPU1\tmJ\t0\n"
                                             "PACC1_CPU2\tmJ\t0\nPACC1_CPU3\tmJ\t0\n"
                                             "EACC_CPU\tmJ\t10\nPACC0_CPM\tmJ\t20\n"
                                             "CPU Energy\tmJ\t1701\nANE0\tmJ\t0\nDRAM0\tmJ\t358\n"
                                             "GPU Energy\tnJ\t9104980\n"));
  const auto breakdown = PowerBreakdown::parse(channels, 0.5);
  EXPECT_DOUBLE_EQ(breakdown.cpu, 3.402);
  EXPECT_DOUBLE_EQ(breakdown.gpu, 0.01820996);
  EXPECT_EQ(breakdown.memory, 0);
  ASSERT_EQ(breakdown.cores.size(), 10u);
  EXPECT_EQ(breakdown.cores[0], (PowerBreakdown::Core{"P0", true, 1.651 / 0.5}));
  EXPECT_EQ(breakdown.cores[7], (PowerBreakdown::Core{"P7", true, 0}));
  EXPECT_EQ(breakdown.cores[8], (PowerBreakdown::Core{"E0", false, 0.004 / 0.5}));
  EXPECT_EQ(breakdown.cores[9], (PowerBreakdown::Core{"E1", false, 0.002 / 0.5}));
}

// Here memory is called by its plain name, and cores are called PCPU2: no core has the form that
// cores are known by.
TEST(EnergyCapturesTest, DeltaOfAnM4) {
  const auto channels =
      channelsOf(captureOr("03_ioreport/zeus_m4_delta.tsv",
                           "ECPU0\tmJ\t2\nPCPU2\tmJ\t2104\nECPU\tmJ\t8\nPCPM\tmJ\t16\n"
                           "CPU Energy\tmJ\t2174\nGPU SRAM\tmJ\t0\nANE\tmJ\t0\nDRAM\tmJ\t61\n"
                           "GPU Energy\tnJ\t0\n"));
  EXPECT_EQ(
      PowerBreakdown::parse(channels, 1),
      (PowerBreakdown{
          .cpu = 2.174, .gpu = 0, .neuralEngine = 0, .memory = 0.061, .display = 0, .cores = {}}));
}

// All names of the chip at 1 each: microjoules of PCIe and the cores' leakage counters (ECPUDTL00,
// PCPU1DTL3e) are no part of any block.
TEST(EnergyCapturesTest, AllNamesOfAnM1Max) {
  const auto channels = channelsOf(captureOr(
      "03_ioreport/m1_max.tsv",
      "PCIe Port 0 Energy\tuJ\napciec0 Energy\tuJ\nEACC_CPU0\tmJ\nEACC_CPU1\tmJ\nPACC0_CPU0\tmJ\n"
      "PACC0_CPU1\tmJ\nPACC0_CPU2\tmJ\nPACC0_CPU3\tmJ\nPACC1_CPU0\tmJ\nPACC1_CPU1\tmJ\n"
      "PACC1_CPU2\tmJ\nPACC1_CPU3\tmJ\nEACC_CPM\tmJ\nEACC_CPU\tmJ\nCPU Energy\tmJ\n"
      "ECPUDTL00\tmJ\nPCPU1DTL3e\tmJ\nGPU0\tmJ\nANE0\tmJ\nDCS0\tmJ\nAMCC0\tmJ\n"
      "GPU Energy\tnJ\n"));
  const auto breakdown = PowerBreakdown::parse(channels, 1);
  EXPECT_EQ(breakdown.cpu, 0.001);
  EXPECT_EQ(breakdown.gpu, 1e-9);
  EXPECT_EQ(breakdown.memory, 0);
  EXPECT_EQ(breakdown.cores.size(), 10u);
}

// Two dies, and a prefix before every name: without a host that translates, nothing but the GPU is
// known, and no core is taken for what it is not.
TEST(EnergyCapturesTest, NamesOfTwoDiesAreNotTheParsersToKnow) {
  const auto channels =
      channelsOf(captureOr("03_ioreport/m1_ultra_macos27.0_26A428.tsv",
                           "DIE_0_EACC_CPU0\tmJ\nDIE_0_PACC0_CPU0\tmJ\nDIE_0_CPU Energy\tmJ\n"
                           "DIE_1_EACC_CPU0\tmJ\nDIE_1_CPU Energy\tmJ\nECPUDTL00\tmJ\n"
                           "ECPUDTL00\tmJ\nANE0_0\tmJ\nDRAM0_1\tmJ\nGPU Energy\tnJ\n"));
  EXPECT_EQ(PowerBreakdown::parse(channels, 1),
            (PowerBreakdown{
                .cpu = 0, .gpu = 1e-9, .neuralEngine = 0, .memory = 0, .display = 0, .cores = {}}));
}

}  // namespace
}  // namespace embrix
