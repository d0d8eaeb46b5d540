// Gives the energy channels of every chip the names that the first chips had, which are the ones
// that PowerBreakdown reads. Chips differ in how they number blocks, clusters, cores and dies, and
// tell some energies twice: as a whole and in parts. No watts are worked out here. Any thread.
#pragma once

#include <cstddef>
#include <vector>

#include "frame/energy_channel.h"

namespace embrix {

// Those of `channels` that say something about a block or a core, blocks first, renamed to one of
//
//   CPU Energy, GPU Energy, GPU, ANE, DRAM, AMCC, DCS, DISP, DISPEXT, EACC<n>_CPU<m>,
//   PACC<n>_CPU<m>
//
// Parts of one block come out under one name, to be summed: `DIE_0_CPU Energy` and
// `DIE_1_CPU Energy` both as `CPU Energy`. Where a chip tells a block as a whole and in parts, only
// the whole comes out. Clusters are numbered anew in each of E and P, across dies. A chip without a
// channel for its whole CPU has the clusters of each level stand for it, or else the level's cores
// a second time.
//
// A channel without a value is left out, and so is one below zero: a counter that ran backwards.
// Blanks around a unit are removed.
std::vector<EnergyChannel> normalizedChannels(const std::vector<EnergyChannel>& channels);

// The same, each with the place among `channels` that it came from.
struct NormalizedChannel {
  EnergyChannel channel;
  std::size_t source = 0;
};
std::vector<NormalizedChannel> normalizedWithSources(const std::vector<EnergyChannel>& channels);

}  // namespace embrix
