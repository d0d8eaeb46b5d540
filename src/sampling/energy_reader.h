// The chip's power by block, from one tick to the next. Sampling thread only.
//
// Some chips publish some of their counters in batches of about two seconds, which no tick is in
// step with: one tick then sees nothing and the next sees twice the energy. The reader holds the
// interval to what was published, and lets the last figures stand in a tick in which nothing was.
//
// Where the counters have time stamps, each is taken by its own. Where they have none, the CPU's
// own counter says when something was published: it cannot stand still while the CPU runs this
// program, so when it does, nothing was, and what the other counters say waits, with its time, for
// the tick that brings the batch. Whether a batch that arrives a tick late took one tick or two to
// gather cannot be told without stamps: it counts as two, and the figures dip instead of dropping
// to zero. Stamps that move while the CPU's counter stands tell when a counter was looked at, and
// are not listened to any more.
#pragma once

#include <optional>
#include <vector>

#include "frame/energy_channel.h"
#include "frame/power_breakdown.h"
#include "host/clock.h"
#include "host/energy_source.h"
#include "sampling/published_watts.h"

namespace embrix {

class EnergyReader {
 public:
  // Seconds for which the last figures can stand: three batches. Counters without stamps that are
  // silent for longer are taken at their word.
  static constexpr double kLongestSilence = 6;

  // Both must outlive the reader.
  EnergyReader(EnergySource& source, Clock& clock) : source_(source), clock_(clock) {}

  // Watts since the read before. Absent at the first read, when the source has nothing to say, when
  // no difference could be made, and until a first batch was seen. Call it once a tick.
  std::optional<PowerBreakdown> read();

 private:
  bool hasStamps(const EnergyInterval& interval);
  std::optional<PowerBreakdown> byClock(std::vector<EnergyChannel> channels, double seconds,
                                        double now);
  void startOver(double now);

  EnergySource& source_;
  Clock& clock_;
  std::optional<double> previous_;  // uptime of the newest sample
  bool isStamped_ = true;           // until its stamps turn out to be no such thing
  PublishedWatts published_{kLongestSilence};
  std::vector<EnergyChannel> pending_;  // without stamps: energy not yet told as watts
  double pendingSeconds_ = 0;           // the time in which it was used
  double toldAt_ = 0;                   // uptime of the newest figures, or of the baseline
  std::optional<PowerBreakdown> last_;  // the newest figures
};

}  // namespace embrix
