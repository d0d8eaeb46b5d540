#include "surfaces/spring.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace embrix {

namespace {

// Closer to 1 than this the formulas for the two other cases divide by what is nearly 0.
constexpr double kCritical = 1e-6;

// A spring without any brake would never come to rest.
constexpr double kLeastDamping = 0.01;

}  // namespace

SpringMotion::SpringMotion(Spring spring, double from, double to, double velocity)
    : frequency_(spring.response > 0 ? 2 * std::numbers::pi / spring.response : 0),
      damping_(std::max(spring.dampingFraction, kLeastDamping)),
      target_(to),
      offset_(from - to),
      velocity_(velocity) {}

SpringMotion::State SpringMotion::stateAt(double seconds) const {
  if (frequency_ == 0) return {};
  if (seconds <= 0) return {offset_, velocity_};
  const double w = frequency_;
  const double z = damping_;

  if (std::abs(z - 1) < kCritical) {
    const double b = velocity_ + w * offset_;
    const double decay = std::exp(-w * seconds);
    return {(offset_ + b * seconds) * decay, (b - w * (offset_ + b * seconds)) * decay};
  }
  if (z < 1) {
    const double swing = w * std::sqrt(1 - z * z);
    const double b = (velocity_ + z * w * offset_) / swing;
    const double decay = std::exp(-z * w * seconds);
    const double cosine = std::cos(swing * seconds);
    const double sine = std::sin(swing * seconds);
    const double offset = offset_ * cosine + b * sine;
    return {offset * decay, (swing * (b * cosine - offset_ * sine) - z * w * offset) * decay};
  }
  const double root = std::sqrt(z * z - 1);
  const double slow = -w * (z - root);
  const double fast = -w * (z + root);
  const double b = (velocity_ - slow * offset_) / (fast - slow);
  const double a = offset_ - b;
  const double slowPart = a * std::exp(slow * seconds);
  const double fastPart = b * std::exp(fast * seconds);
  return {slowPart + fastPart, slow * slowPart + fast * fastPart};
}

double SpringMotion::valueAt(double seconds) const {
  return target_ + stateAt(seconds).offset;
}

double SpringMotion::velocityAt(double seconds) const {
  return stateAt(seconds).velocity;
}

double SpringMotion::envelopeAt(double seconds) const {
  const double w = frequency_;
  const double z = damping_;
  if (std::abs(z - 1) < kCritical) {
    const double b = velocity_ + w * offset_;
    return (std::abs(offset_) + std::abs(b) * seconds) * std::exp(-w * seconds);
  }
  if (z < 1) {
    const double b = (velocity_ + z * w * offset_) / (w * std::sqrt(1 - z * z));
    return std::hypot(offset_, b) * std::exp(-z * w * seconds);
  }
  const double root = std::sqrt(z * z - 1);
  const double slow = -w * (z - root);
  const double fast = -w * (z + root);
  const double b = (velocity_ - slow * offset_) / (fast - slow);
  return std::abs(offset_ - b) * std::exp(slow * seconds) + std::abs(b) * std::exp(fast * seconds);
}

double SpringMotion::fallsFrom() const {
  return std::abs(damping_ - 1) < kCritical ? 1 / frequency_ : 0;
}

double SpringMotion::settlingTime(double tolerance) const {
  if (frequency_ == 0) return 0;
  double early = fallsFrom();
  if (envelopeAt(early) <= tolerance) return offset_ == 0 && velocity_ == 0 ? 0 : early;
  double late = early + 1 / frequency_;
  while (envelopeAt(late) > tolerance) late *= 2;
  constexpr int kHalvings = 60;  // down to the last bit of any sensible time
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = (early + late) / 2;
    (envelopeAt(middle) > tolerance ? early : late) = middle;
  }
  return late;
}

}  // namespace embrix
