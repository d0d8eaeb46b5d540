// The numbers of the motions that all surfaces share. Whether anything moves at all is decided
// where the system's wish is known. Seconds and points. Plain values; any thread.
#pragma once

#include <algorithm>

#include "surfaces/spring.h"

namespace embrix {

struct Motion {
  // A row of a list comes up from below, the further down the later.
  static constexpr Spring kAppear = {0.45, 0.8};
  static constexpr double kAppearRise = 12;
  static constexpr double appearDelay(int index) { return std::min(index * 0.045, 0.4); }

  // A figure of the mascot grows to its size.
  static constexpr Spring kMascotAppear = {0.55, 0.55};
  static constexpr double kMascotAppearDelay = 0.05;
  static constexpr double kMascotAppearScale = 0.6;

  static constexpr Spring kButtonRelease = {0.3, 0.42};
  static constexpr Spring kToggle = {0.18, 0.85};
  static constexpr Spring kListChange = {0.45, 0.8};
  static constexpr Spring kHeroFill = {1.0, 1.0};
  static constexpr Spring kBatteryAppear = {1.1, 0.8};
  static constexpr Spring kBatteryChange = {0.8, 1.0};

  // A value that has changed pops up and back.
  static constexpr Spring kPopUp = Spring::ofDuration(0.5, 0);
  static constexpr double kPopUpTime = 0.14;
  static constexpr double kPopScale = 1.35;
  static constexpr Spring kPopBack = Spring::ofDuration(0.5, 0.3);
  static constexpr double kPopBackTime = 0.35;
};

}  // namespace embrix
