#include "surfaces/qt/spring_value.h"

#include "surfaces/qt/surface_values.h"

namespace embrix {

void SpringValue::setTarget(double target) {
  if (target == target_) return;
  target_ = target;
  if (isComplete_) {
    wait_ = 0;
    move();
  }
  emit targetChanged();
}

void SpringValue::setFrom(double from) {
  if (from_ == from) return;
  from_ = from;
  emit fromChanged();
}

void SpringValue::componentComplete() {
  isComplete_ = true;
  value_ = from_.value_or(target_);
  emit valueChanged();
  wait_ = delay_;
  if (value_ != target_) move();
}

void SpringValue::move() {
  SurfaceValues* values = SurfaceValues::of(this);
  if (values == nullptr || values->motion().isStill()) {
    stop();
    motion_.reset();
    setValue(target_);
    return;
  }
  const double velocity =
      motion_ && state() == Running ? motion_->velocityAt(currentTime() / 1000.0 - wait_) : 0;
  stop();
  motion_.emplace(Spring{.response = response_, .dampingFraction = damping_}, value_, target_,
                  velocity);
  settled_ = motion_->settlingTime(tolerance_);
  start();
}

void SpringValue::updateCurrentTime(int milliseconds) {
  if (!motion_) return;
  const double seconds = milliseconds / 1000.0 - wait_;
  if (seconds < 0) return;
  if (seconds >= settled_) {
    motion_.reset();
    stop();
    setValue(target_);
    return;
  }
  setValue(motion_->valueAt(seconds));
}

void SpringValue::setValue(double value) {
  if (value == value_) return;
  value_ = value;
  emit valueChanged();
}

}  // namespace embrix
