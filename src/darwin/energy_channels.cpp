#include "darwin/energy_channels.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "base/hash_map.h"
#include "darwin/energy_channel_name.h"

namespace embrix {

namespace {

constexpr std::string_view kCpuEnergy = kEnergyBlocks[kCpuBlock];

struct Named {
  const EnergyChannel* channel = nullptr;
  std::optional<BlockName> block;
  std::optional<CoreName> core;
  // How many channels before this one bear its name. Two dies can report under the same names.
  int repeat = 0;
};

// The kernel marks a channel without a value with the smallest number there is. Any other number
// below zero is a counter that was set back within the interval.
bool hasValue(const Named& named) {
  return named.channel->value >= 0;
}

void trimBlanks(std::string& text) {
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
}

std::vector<Named> recognised(const std::vector<EnergyChannel>& channels) {
  std::vector<Named> result;
  HashMap<std::string_view, int> timesSeen;
  for (const EnergyChannel& channel : channels) {
    Named named{.channel = &channel,
                .block = energyBlockOf(channel.name),
                .core = energyCoreOf(channel.name),
                .repeat = 0};
    if (!named.block && !named.core) continue;
    if (named.core) named.repeat = timesSeen[channel.name]++;
    result.push_back(named);
  }
  return result;
}

// Removes what another channel tells better: a channel without a value, and then, of each block,
// everything but its lowest rank. A whole without a value does not keep its parts out.
void keepWholes(std::vector<Named>& blocks) {
  std::erase_if(blocks, [](const Named& named) { return !hasValue(named); });
  std::array<BlockRank, kEnergyBlocks.size()> lowest;
  lowest.fill(BlockRank::cluster);
  for (const Named& named : blocks) {
    BlockRank& rank = lowest[named.block->block];
    rank = std::min(rank, named.block->rank);
  }
  std::erase_if(blocks, [&lowest](const Named& named) {
    return named.block->rank != lowest[named.block->block];
  });
}

// Removes, of each level, everything but the first form of name that it has, whether there are
// values or not: a cluster is no core because its cores are silent for once.
void keepCores(std::vector<Named>& cores) {
  HashMap<char, CoreForm> first;  // by level
  for (const Named& named : cores) {
    const auto known = first.find(named.core->level);
    if (known == first.end() || named.core->form < known->second) {
      first[named.core->level] = named.core->form;
    }
  }
  std::erase_if(cores, [&first](const Named& named) {
    return named.core->form != first.at(named.core->level);
  });
}

// A chip has two levels of cores. On most they are called P and E. The newest with P and M call
// P's cores "Super" and M's "Performance": P is then the system's performance level 0 and M its
// level 1, which are the levels that count as performance and efficiency cores elsewhere too. A
// chip with all three would have M and E side by side in the second.
bool isPerformance(const CoreName& core) {
  return core.level == 'P';
}

using Cluster = std::tuple<char, int, int, int>;  // level, repeat, die, cluster

Cluster clusterOf(const Named& named) {
  return {named.core->level, named.repeat, named.core->die, named.core->cluster};
}

std::vector<Cluster> clustersOf(const std::vector<Named>& cores, bool performance) {
  std::vector<Cluster> clusters;
  for (const Named& named : cores) {
    if (isPerformance(*named.core) == performance) clusters.push_back(clusterOf(named));
  }
  std::sort(clusters.begin(), clusters.end());
  clusters.erase(std::unique(clusters.begin(), clusters.end()), clusters.end());
  return clusters;
}

std::string coreName(const Named& named, const std::vector<Cluster>& clusters) {
  const auto place = std::lower_bound(clusters.begin(), clusters.end(), clusterOf(named));
  return fmt::format("{}ACC{}_CPU{}", isPerformance(*named.core) ? 'P' : 'E',
                     place - clusters.begin(), named.core->index);
}

// `PCPU1` is a core as long as nothing of its level is called `PCPU1_0`; then it is a cluster.
void addClusters(const std::vector<Named>& cores, std::vector<Named>& blocks) {
  HashSet<char> levels;
  for (const Named& named : cores) {
    const CoreForm form = named.core->form;
    const bool isPaired = form == CoreForm::paired || form == CoreForm::pairedOfDie;
    if (isPaired) levels.insert(named.core->level);
  }
  for (const Named& named : cores) {
    const CoreForm form = named.core->form;
    const bool isPlain = form == CoreForm::plain || form == CoreForm::plainOfDie;
    if (!isPlain || !levels.contains(named.core->level)) continue;
    blocks.push_back(named);
    blocks.back().block =
        BlockName{.block = kCpuBlock,
                  .rank = BlockRank::cluster,
                  .cluster = {.level = named.core->level, .number = named.core->index}};
  }
}

bool isClusterOf(char level, const Named& named) {
  return named.block->rank == BlockRank::cluster && named.block->cluster.level == level;
}

// Removes the clusters that are told in another: `PCPU0` and `PCPU1` beside `PCPU`, which is the
// first cluster where they begin at 1, and all of them where they begin at 0.
void keepWholeClusters(std::vector<Named>& blocks) {
  for (const char level : {'E', 'P', 'M'}) {
    const auto has = [&](int number) {
      return std::any_of(blocks.begin(), blocks.end(), [&](const Named& named) {
        return isClusterOf(level, named) && named.block->cluster.number == number;
      });
    };
    if (!has(kUnnumbered) || !has(0)) continue;
    std::erase_if(blocks, [&](const Named& named) {
      return isClusterOf(level, named) && named.block->cluster.number != kUnnumbered;
    });
  }
}

// Whether the CPU's channels tell what that level uses: those of the whole, or of its clusters.
bool isTold(char level, const std::vector<Named>& blocks) {
  return std::any_of(blocks.begin(), blocks.end(), [level](const Named& named) {
    if (named.block->block != kCpuBlock) return false;
    return named.block->rank != BlockRank::cluster || isClusterOf(level, named);
  });
}

}  // namespace

std::vector<NormalizedChannel> normalizedWithSources(const std::vector<EnergyChannel>& channels) {
  std::vector<Named> blocks;
  std::vector<Named> cores;
  for (const Named& named : recognised(channels)) {
    if (named.block) blocks.push_back(named);
    if (named.core) cores.push_back(named);
  }
  addClusters(cores, blocks);
  keepWholes(blocks);
  keepWholeClusters(blocks);
  keepCores(cores);

  std::vector<NormalizedChannel> result;
  const auto add = [&](const Named& named, std::string name) {
    result.push_back({.channel = *named.channel,
                      .source = static_cast<std::size_t>(named.channel - channels.data())});
    result.back().channel.name = std::move(name);
    trimBlanks(result.back().channel.unit);
  };
  for (const Named& named : blocks) add(named, std::string(kEnergyBlocks[named.block->block]));
  // Of silent cores too: a cluster keeps its number from one interval to the next.
  const auto performance = clustersOf(cores, true);
  const auto efficiency = clustersOf(cores, false);
  for (const Named& named : cores) {
    if (!hasValue(named)) continue;
    if (!isTold(named.core->level, blocks)) add(named, std::string(kCpuEnergy));
    add(named, coreName(named, isPerformance(*named.core) ? performance : efficiency));
  }
  return result;
}

std::vector<EnergyChannel> normalizedChannels(const std::vector<EnergyChannel>& channels) {
  std::vector<EnergyChannel> result;
  for (NormalizedChannel& each : normalizedWithSources(channels)) {
    result.push_back(std::move(each.channel));
  }
  return result;
}

}  // namespace embrix
