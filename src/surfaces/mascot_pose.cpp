#include "surfaces/mascot_pose.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>

namespace embrix {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

// Seconds.
constexpr double kBreath = 3.2;
constexpr double kSway = 4;
constexpr double kTuftSwing = 2.6;
constexpr double kBlinkCycle = 4.3;
constexpr double kFirstBlink = 3.9;  // in the cycle
constexpr double kSecondBlink = 4.12;
constexpr double kBlinkHalf = 0.09;  // to close, and again to open
constexpr int kTwiceEvery = 3;       // cycles

// Units: from the foot of the figure, about which it leans and flattens, to the top of its body;
// from the foot of the tuft to its tip; and the way of the drop in a whole phase.
constexpr double kHeight = 96;
constexpr Point kTuft = {16, -10};
constexpr double kDropWay = 22 / 0.85;
constexpr double kSweatyDrip = 2.6;
constexpr double kStressedDrip = 1.6;
constexpr double kShiverEvery = 3;
constexpr double kShiver = 0.45;

// The rest of a division, 0 to below `period` for times before 0, too.
double phase(double time, double period) {
  return time - std::floor(time / period) * period;
}

double fraction(double value) {
  return value - std::floor(value);
}

bool blinksTwice(double cycle) {
  return std::fmod(cycle, kTwiceEvery) == 0;
}

double openness(double inCycle, double blink) {
  return std::min(std::abs(inCycle - blink) / kBlinkHalf, 1.0);
}

double shiver(double time) {
  const double s = phase(time, kShiverEvery);
  if (s >= kShiver) return 0;
  constexpr double kShakesASecond = 9;
  constexpr double kWidth = 2.4;
  return (1 - s / kShiver) * std::sin(kTurn * s * kShakesASecond) * kWidth;
}

}  // namespace

MascotPose MascotPose::of(MascotMood mood, double time) {
  MascotPose pose{.time = time};
  const double w = kTurn * time;
  if (mood != MascotMood::logo) {
    pose.squash = 0.018 * std::sin(w / kBreath);
    pose.dy = 1.6 * std::sin(w / kBreath + 0.8);
    pose.tuft = std::sin(w / kTuftSwing) * 9;
  }
  if (mood == MascotMood::relieved) pose.tilt = 3 * std::sin(w / kSway);

  const double inCycle = phase(time, kBlinkCycle);
  const double cycle = std::floor(time / kBlinkCycle);
  pose.eyes = openness(inCycle, kFirstBlink);
  if (blinksTwice(cycle)) pose.eyes *= openness(inCycle, kSecondBlink);

  if (mood == MascotMood::sweaty) pose.drip = fraction(time / kSweatyDrip);
  if (mood == MascotMood::stressed) {
    pose.drip = fraction(time / kStressedDrip);
    pose.shake = shiver(time);
    pose.brow = 1.6 * std::max(std::sin(w / 1.5), 0.0);
  }
  return pose;
}

double MascotPose::distanceTo(const MascotPose& other) const {
  constexpr double kRadians = std::numbers::pi / 180;
  // The angles are small enough for an arc to be taken as straight.
  const double lean = (other.tilt - tilt) * kRadians;
  const double x = other.shake - shake + kHeight * lean;
  const double y = other.dy - dy + kHeight * (other.squash - squash);
  const double swing = (other.tuft - tuft) * kRadians;
  const double drop = drip && other.drip ? kDropWay * std::abs(*other.drip - *drip) : 0;
  return std::max({std::hypot(x, y), std::hypot(x - kTuft.y * swing, y + kTuft.x * swing), drop,
                   std::abs(other.brow - brow)});
}

double MascotPose::nextBlink(double time) {
  const double inCycle = phase(time, kBlinkCycle);
  const double start = time - inCycle;
  for (const double blink : {kFirstBlink, kSecondBlink}) {
    if (blink == kSecondBlink && !blinksTwice(std::floor(time / kBlinkCycle))) break;
    if (inCycle < blink + kBlinkHalf) return std::max(time, start + blink - kBlinkHalf);
  }
  return start + kBlinkCycle + kFirstBlink - kBlinkHalf;
}

}  // namespace embrix
