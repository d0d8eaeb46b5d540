// Channels with names made of the pieces of real ones. Whatever they are, what comes out is known
// to the breakdown, means the same when it goes through again, and has no watts below zero.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "darwin/energy_channels.h"
#include "darwin/energy_report.h"
#include "frame/power_breakdown.h"

namespace {

using embrix::EnergyChannel;

constexpr std::array<const char*, 26> kPieces = {
    "DIE_", "0",   "1",    "2",     "_",
    "E",    "P",   "M",    "ACC",   "CPU",
    "_CPU", "ANE", "DRAM", "AMCC",  "DCS",
    "DISP", "EXT", "GPU",  " ",     "Energy",
    "CPM",  "DTL", "SRAM", "PACC0", "99999999999999999999",
    ""};
constexpr std::array<const char*, 8> kUnits = {"nJ", "uJ", "µJ", "mJ", "J", " mJ  ", "", "W"};

std::string nameOf(FuzzedDataProvider& data) {
  std::string name;
  for (int i = data.ConsumeIntegralInRange(0, 6); i > 0; --i) {
    name += data.PickValueInArray(kPieces);
  }
  if (data.ConsumeBool()) name += data.ConsumeRandomLengthString(4);
  return name;
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  std::vector<embrix::StampedChannel> stamped;
  std::vector<EnergyChannel> channels;
  while (data.remaining_bytes() > 0) {
    channels.push_back(
        {nameOf(data), data.PickValueInArray(kUnits), data.ConsumeIntegral<std::int64_t>()});
    stamped.push_back({channels.back(), data.ConsumeIntegral<std::uint64_t>(),
                       data.ConsumeIntegral<std::uint64_t>()});
  }
  const auto once = embrix::normalizedChannels(channels);
  require(once.size() <= 2 * channels.size());
  for (const EnergyChannel& channel : once) require(channel.value >= 0);

  const auto power = embrix::PowerBreakdown::parse(once, 1);
  require(embrix::PowerBreakdown::parse(embrix::normalizedChannels(once), 1).cpu == power.cpu);
  for (const double watts :
       {power.cpu, power.gpu, power.neuralEngine, power.memory, power.display}) {
    require(std::isfinite(watts) && watts >= 0);
  }

  const auto interval = embrix::energyInterval(stamped, 1.0 / 24'000'000);
  require(interval.channels == once);
  if (interval.seconds) {
    require(!once.empty() && interval.seconds->size() == once.size());
    for (const double seconds : *interval.seconds) require(std::isfinite(seconds) && seconds >= 0);
  }
  return 0;
}
