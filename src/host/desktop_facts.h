// What the desktop says of its user: wishes, and whether somebody is there. Main thread only.
#pragma once

#include <functional>
#include <optional>

namespace embrix {

class DesktopFacts {
 public:
  virtual ~DesktopFacts() = default;

  // Whether windows are to be dark; absent while the desktop has not said so.
  virtual std::optional<bool> prefersDark() = 0;

  // Whether the user wants less motion. False while the desktop has not said so.
  virtual bool reducesMotion() = 0;

  // Seconds since the last input of any kind to any program; absent while nobody knows. Cheap: may
  // be asked at every frame that is drawn.
  virtual std::optional<double> idleSeconds() = 0;

  // Called after each change of the first two, and when the desktop may have got a place for menu
  // bar items. A second callback takes the place of the first.
  virtual void onChange(std::function<void()> changed) = 0;
};

}  // namespace embrix
