// The watts of a busy core, from which the energy of a process is estimated.
//
// The Linux kernel counts no energy for a process. What stands for it is CPU time × the watts of
// one busy core. Those come from the package's energy counter where it can be read (by root on most
// distributions), else from one constant. It is an estimate either way: it knows neither of
// efficiency cores nor of the clock that a process happened to run at.
#pragma once

#include <cstdint>
#include <optional>

namespace embrix {

// A core of a laptop or small desktop under sustained load: packages of 15 to 65 W shared by 4 to
// 16 cores. Used where nothing is measured.
inline constexpr double kAssumedWattsPerBusyCore = 4.0;

class EnergyEstimate {
 public:
  // One tick's readings: seconds since the machine started, the package's energy so far in
  // microjoules (absent when unreadable), the seconds of CPU time that all cores together were busy
  // so far. Readings that run backwards, as a wrapped counter does, leave the figure as it was.
  void update(double uptime, std::optional<std::uint64_t> packageMicrojoules, double busySeconds);

  double wattsPerBusyCore() const { return watts_; }

 private:
  struct Reading {
    double uptime = 0;
    std::uint64_t microjoules = 0;
    double busySeconds = 0;
  };
  std::optional<Reading> previous_;
  double watts_ = kAssumedWattsPerBusyCore;
};

}  // namespace embrix
