// What the name of an energy channel says, over all chips seen so far. One name at a time: what
// follows from several names standing side by side is in darwin/energy_channels.h. Any thread.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace embrix {

// The blocks that PowerBreakdown reads, by the names it knows them by.
inline constexpr std::array<std::string_view, 9> kEnergyBlocks = {
    "CPU Energy", "GPU Energy", "GPU", "ANE", "DRAM", "AMCC", "DCS", "DISP", "DISPEXT"};
inline constexpr std::size_t kCpuBlock = 0;

// How far from the whole a channel of a block is. A block's channels of the lowest rank are summed,
// the others are the same energy told again.
enum class BlockRank {
  whole,          // "ANE"
  numbered,       // "ANE0"
  numberedTwice,  // "ANE0_1": on a chip of two dies
  wholeOfDie,     // "DIE_0_CPU Energy"
  numberedOfDie,
  numberedTwiceOfDie,
  cluster,  // "PACC0_CPU", "PCPU", "MCPU1": of the CPU only
};

inline constexpr int kUnnumbered = -1;

struct ClusterName {
  char level = 'P';  // 'E', 'P' or 'M'
  int number = kUnnumbered;

  bool operator==(const ClusterName&) const = default;
};

struct BlockName {
  std::size_t block = 0;  // a place in kEnergyBlocks
  BlockRank rank = BlockRank::whole;
  ClusterName cluster = {};  // for the rank of that name alone

  bool operator==(const BlockName&) const = default;
};

// How a core is named. A chip that has several names for its cores has the first of them as the
// finest and the others as something coarser: `MCPU0` is a cluster beside `MCPU0_0`, but `PCPU0` a
// core where nothing is called `PCPU0_0`.
enum class CoreForm {
  accelerated,       // "PACC0_CPU1", "EACC_CPU3"
  acceleratedOfDie,  // "DIE_1_PACC0_CPU1"
  paired,            // "MCPU0_3", "PACC_0"
  pairedOfDie,
  plain,  // "PCPU2"
  plainOfDie,
};
inline constexpr int kNoDie = -1;

struct CoreName {
  char level = 'E';  // 'E', 'P' or 'M'
  CoreForm form = CoreForm::accelerated;
  int die = kNoDie;
  int cluster = 0;  // 0 when the name has none
  int index = 0;

  bool operator==(const CoreName&) const = default;
};

// Absent for the name of anything else. A number too large to be one counts as 0.
std::optional<BlockName> energyBlockOf(std::string_view name);
std::optional<CoreName> energyCoreOf(std::string_view name);

}  // namespace embrix
