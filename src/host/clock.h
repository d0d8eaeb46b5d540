#pragma once

namespace embrix {

class Clock {
 public:
  virtual ~Clock() = default;

  // Seconds since the machine started; never goes back. Intervals and cadences use this.
  virtual double uptime() = 0;

  // Seconds since 1970 by the wall clock, which can be set.
  virtual double wallTime() = 0;

  // Holds the calling thread for so many seconds, suspend included. A replayed machine returns at
  // once.
  virtual void sleep(double seconds) = 0;
};

}  // namespace embrix
