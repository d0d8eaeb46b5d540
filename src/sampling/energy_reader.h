// The chip's power by block, from one tick to the next. Sampling thread only.
//
// Some chips publish their counters in batches of about two seconds, which no tick is in step with:
// one tick then sees nothing and the next sees twice the energy. The reader holds the interval to
// what was published, and lets the last figures stand in a tick in which nothing was. Where the
// source has time stamps, they say so. Where it has none, the CPU's own counter does: it cannot
// stand still while the CPU runs this program, so when it does, nothing was published, and what the
// other counters say waits, with its time, for the tick that brings the batch. Whether a batch that
// arrives a tick late took one tick or two to gather cannot be told without stamps: it counts as
// two, and the figures dip instead of dropping to zero.
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
  void forgetPending();

  EnergySource& source_;
  Clock& clock_;
  std::optional<double> previous_;      // uptime of the newest sample
  std::vector<EnergyChannel> pending_;  // energy not yet told as watts
  double pendingSeconds_ = 0;           // the time in which it was used
  double toldAt_ = 0;                   // uptime of the newest figures, or of the baseline
  std::optional<PowerBreakdown> last_;  // the newest figures
};

}  // namespace embrix
