// The chip's power by block, from one tick to the next. Sampling thread only.
//
// Some chips publish their counters in batches of about two seconds, which no tick is in step with:
// one tick then sees nothing and the next sees twice the energy. The reader holds the interval to
// what was published. Where the source has time stamps, it divides by them. Where it has none, it
// waits: a tick in which the CPU's own counter stands still published nothing, for a CPU that runs
// this program uses energy. In such a tick the last figures stand, and what little was published
// counts, with its time, into the next.
#pragma once

#include <optional>
#include <vector>

#include "frame/energy_channel.h"
#include "frame/power_breakdown.h"
#include "host/clock.h"
#include "host/energy_source.h"

namespace embrix {

class EnergyReader {
 public:
  // Seconds for which the last figures can stand: three batches. Counters that are silent for
  // longer are taken at their word.
  static constexpr double kLongestSilence = 6;

  // Both must outlive the reader.
  EnergyReader(EnergySource& source, Clock& clock) : source_(source), clock_(clock) {}

  // Watts since the read before. Absent at the first read, when the source has nothing to say, when
  // no difference could be made, and until a first batch was seen. Call it once a tick.
  std::optional<PowerBreakdown> read();

 private:
  void startOver(double now);

  EnergySource& source_;
  Clock& clock_;
  std::optional<double> previous_;      // uptime of the newest sample
  std::vector<EnergyChannel> pending_;  // energy not yet told as watts
  double pendingSeconds_ = 0;           // the time in which it was used
  double pendingSince_ = 0;             // uptime at which that time began
  std::optional<PowerBreakdown> last_;  // the figures of the newest batch
};

}  // namespace embrix
