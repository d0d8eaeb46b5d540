// The label of the menu bar item as the model has it, and the loop that lets its flame flicker.
// What draws it is told only when something of it has changed. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/scheduler.h"
#include "model/power_model.h"
#include "surfaces/menu_bar_icon.h"

namespace embrix {

class MenuBarLabel {
 public:
  struct Content {
    MenuBarIcon::Image flame;
    std::optional<std::string> watts;  // "12 W", beside the flame; absent where none is to stand

    bool operator==(const Content&) const = default;
  };

  struct Surroundings {
    std::function<bool()> reducesMotion;  // asked each time, as the user may change it
    std::function<void(const Content&)> show;
  };

  // Shows what there is at once. The model and the scheduler outlive this.
  MenuBarLabel(PowerModel& model, Scheduler& scheduler, Surroundings surroundings);
  MenuBarLabel(const MenuBarLabel&) = delete;
  MenuBarLabel& operator=(const MenuBarLabel&) = delete;

  const Content& content() const { return content_; }
  int flameFrame() const { return flameFrame_; }

  // Looks at everything afresh: for what tells nobody of its changes, such as settings and the
  // system's wish for less motion.
  void refresh();

  // Seconds that a flame of that machine stands in one frame.
  static double flickerPause(double watts, double hotThreshold);

 private:
  bool flickers() const;
  Content current() const;
  void showIfChanged();
  void waitForNextFrame();

  PowerModel& model_;
  Scheduler& scheduler_;
  Surroundings surroundings_;
  Content content_;
  int flameFrame_ = 0;
  Scheduled nextFrame_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace embrix
