#include "frame/power_breakdown.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include <fmt/format.h>

namespace embrix {

namespace {

// The names that blocks are published under, in the order of kBlockNames.
enum Block : std::size_t {
  kCPUEnergy,
  kGPUEnergy,
  kGPU,
  kANE,
  kDRAM,
  kAMCC,
  kDCS,
  kDISP,
  kDISPEXT,
};
constexpr std::array<std::string_view, 9> kBlockNames = {
    "CPU Energy", "GPU Energy", "GPU", "ANE", "DRAM", "AMCC", "DCS", "DISP", "DISPEXT"};

struct CoreChannel {
  bool isPerformance = false;
  std::int64_t cluster = 0;
  std::int64_t index = 0;
  std::string_view name;
  double watts = 0;

  // Performance cores first. Two names can mean one place ("PACC_CPU0", "PACC0_CPU0"), and these
  // go by name.
  auto order() const { return std::make_tuple(!isPerformance, cluster, index, name); }
};

double joules(const EnergyChannel& channel) {
  const auto value = static_cast<double>(channel.value);
  if (channel.unit == "nJ") return value / 1e9;
  if (channel.unit == "uJ" || channel.unit == "\u00B5J") return value / 1e6;
  if (channel.unit == "mJ") return value / 1000;
  if (channel.unit == "J") return value;
  return 0;
}

bool take(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::string_view takeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of("0123456789"));
  text.remove_prefix(digits.size());
  return digits;
}

// 0 for no digits and for more than 64 bits hold.
std::int64_t numberOf(std::string_view digits) {
  std::int64_t number = 0;
  const auto end = digits.data() + digits.size();
  return std::from_chars(digits.data(), end, number).ec == std::errc() ? number : 0;
}

// Matches ^([EP])ACC(\d*)_CPU(\d+)$ by hand: compiling the expression costs more than all the
// matching of a tick, and std::regex adds several hundred kilobytes to the program. "ECPU" and
// "EACC_CPU", the totals of a cluster, are no cores.
std::optional<CoreChannel> coreOf(const PowerBreakdown::ChannelWatts& channel) {
  std::string_view rest = channel.name;
  CoreChannel core;
  core.name = rest;
  core.watts = channel.watts;
  core.isPerformance = rest.starts_with('P');
  if (!take(rest, "EACC") && !take(rest, "PACC")) return std::nullopt;
  core.cluster = numberOf(takeDigits(rest));
  if (!take(rest, "_CPU")) return std::nullopt;
  const std::string_view index = takeDigits(rest);
  if (index.empty() || !rest.empty()) return std::nullopt;
  core.index = numberOf(index);
  return core;
}

// One entry for each name, in order of kind, cluster and index.
std::vector<PowerBreakdown::Core> numberedCores(std::vector<CoreChannel> channels) {
  std::stable_sort(channels.begin(), channels.end(),
                   [](const auto& a, const auto& b) { return a.order() < b.order(); });
  std::vector<PowerBreakdown::Core> cores;
  int performance = 0;
  int efficiency = 0;
  std::string_view previous;
  for (const CoreChannel& channel : channels) {
    if (channel.name == previous) {
      cores.back().watts += channel.watts;
      continue;
    }
    previous = channel.name;
    const int number = channel.isPerformance ? performance++ : efficiency++;
    cores.push_back({.name = fmt::format("{}{}", channel.isPerformance ? 'P' : 'E', number),
                     .isPerformance = channel.isPerformance,
                     .watts = channel.watts});
  }
  return cores;
}

}  // namespace

PowerBreakdown PowerBreakdown::parse(const std::vector<EnergyChannel>& channels, double seconds) {
  if (!(seconds > 0)) return empty();
  std::vector<ChannelWatts> each;
  each.reserve(channels.size());
  for (const EnergyChannel& channel : channels) {
    each.push_back({channel.name, watts(channel, seconds)});
  }
  return of(each);
}

double PowerBreakdown::watts(const EnergyChannel& channel, double seconds) {
  return joules(channel) / seconds;
}

PowerBreakdown PowerBreakdown::of(const std::vector<ChannelWatts>& channels) {
  std::array<std::optional<double>, kBlockNames.size()> blocks;
  std::vector<CoreChannel> cores;
  for (const ChannelWatts& channel : channels) {
    const auto name = std::find(kBlockNames.begin(), kBlockNames.end(), channel.name);
    if (name != kBlockNames.end()) {
      auto& sum = blocks[static_cast<std::size_t>(name - kBlockNames.begin())];
      sum = sum.value_or(0) + channel.watts;
    } else if (const auto core = coreOf(channel)) {
      cores.push_back(*core);
    }
  }
  const auto wattsOf = [&](Block block) { return blocks[block].value_or(0); };
  return {.cpu = wattsOf(kCPUEnergy),
          .gpu = blocks[kGPUEnergy] ? wattsOf(kGPUEnergy) : wattsOf(kGPU),
          .neuralEngine = wattsOf(kANE),
          .memory = wattsOf(kDRAM) + wattsOf(kAMCC) + wattsOf(kDCS),
          .display = wattsOf(kDISP) + wattsOf(kDISPEXT),
          .cores = numberedCores(std::move(cores))};
}

}  // namespace embrix
