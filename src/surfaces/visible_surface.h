// A surface that is on the screen: while one of these lives, the model samples for somebody who
// looks. Main thread only.
#pragma once

#include "model/power_model.h"

namespace embrix {

class VisibleSurface {
 public:
  explicit VisibleSurface(PowerModel& model) : model_(model) { model_.surfaceAppeared(); }
  VisibleSurface(const VisibleSurface&) = delete;
  VisibleSurface& operator=(const VisibleSurface&) = delete;
  ~VisibleSurface() { model_.surfaceDisappeared(); }

 private:
  PowerModel& model_;
};

}  // namespace embrix
