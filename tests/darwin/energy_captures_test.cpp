// What holds of the energy channels of every chip, whatever it calls them. The rules are told once
// more here, by patterns.
#include <charconv>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "darwin/energy_channels.h"
#include "fakes/captures.h"
#include "frame/power_breakdown.h"

namespace embrix {
namespace {

using Channels = std::vector<EnergyChannel>;

// Lines of name, unit and perhaps value, a tab between each; a thousand where there is no value.
Channels channelsOf(const std::string& table) {
  Channels channels;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    EnergyChannel channel{.name = "", .unit = "", .value = 1000};
    std::string value;
    if (line.starts_with('#') || !std::getline(fields, channel.name, '\t') ||
        !std::getline(fields, channel.unit, '\t')) {
      continue;
    }
    if (std::getline(fields, value)) {
      std::from_chars(value.data(), value.data() + value.size(), channel.value);
    }
    channels.push_back(channel);
  }
  return channels;
}

Channels matching(const Channels& channels, const std::string& pattern) {
  const std::regex form(pattern);
  Channels found;
  for (const EnergyChannel& channel : channels) {
    if (channel.value >= 0 && std::regex_match(channel.name, form)) {
      found.push_back(channel);
    }
  }
  return found;
}

// The watts over one second of the first of the patterns that any channel matches.
std::optional<double> wattsOf(const Channels& channels, const std::vector<std::string>& patterns) {
  for (const std::string& pattern : patterns) {
    const Channels found = matching(channels, pattern);
    if (found.empty()) continue;
    double sum = 0;
    for (const EnergyChannel& channel : found) sum += PowerBreakdown::watts(channel, 1);
    return sum;
  }
  return std::nullopt;
}

std::optional<double> blockWatts(const Channels& channels, const std::string& block) {
  const std::string die = "DIE_\\d+_";
  return wattsOf(channels, {block, block + "\\d+", block + "\\d+_\\d+", die + block,
                            die + block + "\\d+", die + block + "\\d+_\\d+"});
}

std::size_t coresOf(const Channels& channels, const std::string& level) {
  for (const char* rest : {"ACC\\d*_CPU\\d+", "(ACC|CPU)\\d*_\\d+", "CPU\\d+"}) {
    for (const char* die : {"", "DIE_\\d+_"}) {
      const auto found = matching(channels, die + level + rest);
      if (!found.empty()) return found.size();
    }
  }
  return 0;
}

const std::vector<Capture> kHandMade = {
    {"one die",
     "# remark\nEACC_CPU0\tmJ\t4\nPACC0_CPU0\tmJ\t1651\nPACC1_CPU0\tmJ\t0\nEACC_CPU\tmJ\t10\n"
     "CPU Energy\tmJ\t1701\nGPU SRAM0\tmJ\t0\nANE0\tmJ\t0\nDRAM0\tmJ\t358\n"
     "GPU Energy\tnJ\t9104980\nPCIe Port 0 Energy\tuJ\t12\n"},
    {"two dies",
     "DIE_0_EACC_CPU0\tmJ\nDIE_1_EACC_CPU0\tmJ\nDIE_0_PACC0_CPU1\tmJ\nDIE_0_CPU Energy\tmJ\n"
     "DIE_1_CPU Energy\tmJ\nECPUDTL00\tmJ\nECPUDTL00\tmJ\nANE0_0\tmJ\nANE0_1\tmJ\n"
     "DRAM0_0\tmJ\nAMCC0_1\tmJ\nGPU0_0\tmJ\nGPU Energy\tnJ\n"},
    {"super and performance cores",
     "MCPU0\tmJ\t700\nPCPU\tmJ\t5000\nCPU Energy\tmJ\t5800\nMCPU0_0\tmJ\t100\n"
     "MCPU0_1\tmJ\t101\nPACC_0\tmJ\t800\nGPU0\tmJ\t3\nDISP0\tmJ\t500\nDISPEXT0\tmJ\t20\n"
     "ANE0\tmJ\t-9223372036854775808\nGPU Energy\tnJ\t2500000000\n"},
    {"plain names",
     "ECPU0\tmJ\t2\nECPU1\tmJ\t1\nPCPU0\tmJ\t47\nECPU\tmJ\t8\nPCPU\tmJ\t2200\nECPM\tmJ\t2\n"
     "CPU Energy\tmJ\t2174\nGPU SRAM\tmJ\t0\nANE\tmJ\t0\nDRAM\tmJ\t61\nGPU Energy\tnJ\t0\n"},
};

class EnergyCaptureTest : public testing::Test {
 protected:
  std::vector<Capture> captures_ = capturesIn("03_ioreport", kHandMade);
};

TEST_F(EnergyCaptureTest, BlocksAreTheirWholesOrTheSumOfTheirParts) {
  for (const auto& [name, table] : captures_) {
    const Channels channels = channelsOf(table);
    ASSERT_FALSE(channels.empty()) << name;
    const auto power = PowerBreakdown::parse(normalizedChannels(channels), 1);
    const auto block = [&](const char* of) { return blockWatts(channels, of).value_or(0); };
    if (const auto whole = blockWatts(channels, "CPU Energy")) {
      EXPECT_DOUBLE_EQ(power.cpu, *whole) << name;
    }
    const auto graphics = blockWatts(channels, "GPU Energy");
    EXPECT_DOUBLE_EQ(power.gpu, graphics ? *graphics : block("GPU")) << name;
    EXPECT_DOUBLE_EQ(power.neuralEngine, block("ANE")) << name;
    EXPECT_DOUBLE_EQ(power.memory, block("DRAM") + block("AMCC") + block("DCS")) << name;
    EXPECT_DOUBLE_EQ(power.display, block("DISP") + block("DISPEXT")) << name;
  }
}

TEST_F(EnergyCaptureTest, EveryCoreIsThereOnce) {
  for (const auto& [name, table] : captures_) {
    const Channels channels = channelsOf(table);
    const auto power = PowerBreakdown::parse(normalizedChannels(channels), 1);
    const std::size_t cores =
        coresOf(channels, "E") + coresOf(channels, "P") + coresOf(channels, "M");
    EXPECT_EQ(power.cores.size(), cores) << name;
    EXPECT_GT(cores, 0u) << name;
  }
}

// Without the whole its parts stand for it, and the cores for the clusters.
TEST_F(EnergyCaptureTest, ACPUWithoutAWholeIsStillKnown) {
  for (const auto& [name, table] : captures_) {
    Channels channels = channelsOf(table);
    std::erase_if(channels, [](const EnergyChannel& channel) {
      return channel.name.ends_with("CPU Energy");
    });
    const auto expected = [&](const std::string& level) {
      const std::string die = "(DIE_\\d+_)?";
      const std::string cluster =
          die + level + (level == "M" ? "CPU\\d*|" : "CPU|") + die + level + "ACC\\d*_CPU";
      return wattsOf(channels, {cluster, die + level + "ACC\\d*_CPU\\d+",
                                die + level + "(ACC|CPU)\\d*_\\d+", die + level + "CPU\\d+"})
          .value_or(0);
    };
    const auto power = PowerBreakdown::parse(normalizedChannels(channels), 1);
    EXPECT_DOUBLE_EQ(power.cpu, expected("E") + expected("P") + expected("M")) << name;
    EXPECT_GT(power.cpu, 0) << name;
  }
}

TEST_F(EnergyCaptureTest, AgainChangesNothing) {
  for (const auto& [name, table] : captures_) {
    const Channels once = normalizedChannels(channelsOf(table));
    EXPECT_EQ(normalizedChannels(once), once) << name;
  }
}

TEST_F(EnergyCaptureTest, ChannelsWithoutValuesLeaveNothing) {
  for (const auto& [name, table] : captures_) {
    Channels channels = channelsOf(table);
    for (EnergyChannel& channel : channels) channel.value = INT64_MIN;
    EXPECT_TRUE(normalizedChannels(channels).empty()) << name;
  }
}

}  // namespace
}  // namespace embrix
