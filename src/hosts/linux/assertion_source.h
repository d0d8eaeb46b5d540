// What holds the machine awake, by the login service's inhibitors, in the names of the platform
// that the reader knows. Only holds that forbid sleep count, not those that merely ask for a moment
// ("delay"), nor those on keys and the lid:
//
//   "idle" in what   PreventUserIdleSystemSleep
//   "sleep" in what  PreventSystemSleep
//
// The process name is what the holder calls itself, else the kernel's name of it. The login service
// keeps no dates: a hold dates from when it was first seen here, which is never older than the
// truth. What desktops keep beside the login service to hold off the screen saver is not asked for;
// each has an interface of its own. Sampling thread only.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "host/assertion_source.h"
#include "hosts/linux/logind_inhibitors.h"

namespace embrix {

class LinuxAssertionSource final : public AssertionSource {
 public:
  // `wallTime`: seconds since 1970.
  LinuxAssertionSource(const std::string& root, InhibitorLister list,
                       std::function<double()> wallTime);

  std::vector<ProcessAssertions> read() override;

 private:
  using Hold = std::tuple<std::uint32_t, std::string, std::string, std::string>;

  std::string processName(const LogindInhibitor& inhibitor) const;

  std::string proc_;
  InhibitorLister list_;
  std::function<double()> wallTime_;
  std::map<Hold, double> firstSeen_;  // pid, what, who, why to seconds since 1970
};

}  // namespace embrix
