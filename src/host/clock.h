#pragma once

namespace embrix {

class Clock {
 public:
  virtual ~Clock() = default;

  // Told at the beginning of each tick: what is read from here to the next call belongs together. A
  // recording keeps its place by it; a live machine need not care.
  virtual void beginTick() {}

  // Seconds since the machine started; never goes back. Intervals and cadences use this.
  virtual double uptime() = 0;

  // Seconds since 1970 by the wall clock, which can be set.
  virtual double wallTime() = 0;

  // Holds the calling thread for so many seconds, suspend included. A replayed machine returns at
  // once.
  virtual void sleep(double seconds) = 0;
};

}  // namespace embrix
