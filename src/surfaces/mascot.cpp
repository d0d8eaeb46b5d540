#include "surfaces/mascot.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace embrix {

namespace {

// Seconds.
constexpr double kBlend = 0.7;
constexpr double kMoodHop = 0.45;
constexpr double kReliefHop = 0.5;
constexpr double kRelief = 2.2;
constexpr double kSquash = 0.5;
constexpr double kReaction = 0.9;
constexpr double kRise = 0.18;
constexpr double kHover = 0.25;
constexpr double kTapsTogether = 1.2;
constexpr double kIdleBeforeSleep = 600;
constexpr double kFallingAsleep = 2.5;
// A display's frame; one in which lids still close and open smoothly; and the moments on which what
// is slow is drawn: breath, swing and drop.
constexpr double kQuickFrame = 1.0 / 60;
constexpr double kBlinkFrame = 1.0 / 30;
constexpr double kSlowFramesPerSecond = 20;
constexpr double kSlowFrame = 1 / kSlowFramesPerSecond;
// What is slow is drawn when it has moved by so many points, which no eye takes for a step. At the
// turn of a breath that takes longest.
constexpr double kStep = 0.5;
constexpr int kMostSlowFrames = 6;
// How early a timer may fire, and how exact a wall clock is.
constexpr double kEarly = 0.002;

constexpr double kGazeReach = 140;  // points, where the pupils are at their limit

double smoothstep(double u) {
  return u * u * (3 - 2 * u);
}

// Up to 1 in kRise, then down to 0 at `end`; 0 outside.
double pulse(double elapsed, double end) {
  if (elapsed < 0 || elapsed > end) return 0;
  return elapsed < kRise ? elapsed / kRise : 1 - (elapsed - kRise) / (end - kRise);
}

bool isWithin(double elapsed, double end) {
  return elapsed >= 0 && elapsed <= end;
}

// The part of `span` that has passed, 0 to 1. A beginning that lies ahead, because somebody has put
// the clock back, is taken for long ago: nothing is to last until that time comes again.
double passed(double elapsed, double span) {
  return elapsed < 0 ? 1 : std::min(elapsed / span, 1.0);
}

double sleepiness(MascotMood mood, const Mascot::Surroundings& surroundings) {
  if (mood == MascotMood::stressed || surroundings.steaming || !surroundings.idle) return 0;
  return std::clamp((*surroundings.idle - kIdleBeforeSleep) / kFallingAsleep, 0.0, 1.0);
}

// Seconds until the next slow moment that is at least a display's frame away.
double untilSlowMoment(double now) {
  return std::ceil((now + kQuickFrame) * kSlowFramesPerSecond) / kSlowFramesPerSecond - now;
}

Point look(Point gaze) {
  const double d = std::hypot(gaze.x, gaze.y);
  const double k = d >= 1 ? std::min(d / kGazeReach, 1.0) : 1 / kGazeReach;
  const double m = std::max(d, 1.0);
  return {k * gaze.x / m * 3, k * gaze.y / m * 2.5};
}

}  // namespace

void Mascot::setMood(Mood mood, double now) {
  if (mood == mood_) return;
  blendFrom_ = mood_;
  blendStart_ = now;
  mood_ = mood;
}

void Mascot::setHovering(bool hovering, double now) {
  if (hovering && !isHovering_) hoverStart_ = now;
  isHovering_ = hovering;
}

void Mascot::tap(double now) {
  std::erase_if(taps_, [now](double tap) { return passed(now - tap, kTapsTogether) >= 1; });
  taps_.push_back(now);
  Reaction reaction = Reaction::giggle;
  if (taps_.size() == 2) reaction = Reaction::wink;
  if (taps_.size() > 2) {
    taps_.clear();
    reaction = Reaction::surprise;
  }
  reacting_ = {reaction, now};
}

std::optional<Mascot::Reaction> Mascot::reaction() const {
  if (!reacting_) return std::nullopt;
  return reacting_->reaction;
}

Mascot::Pose Mascot::pose(double now, const Surroundings& surroundings) const {
  using std::numbers::pi;
  Pose pose = Pose::of(mood_, now + seed_);
  if (isHovering_) pose.eyeScale += 0.18 * passed(now - hoverStart_, kHover);
  if (blendFrom_) pose.dy -= 6 * std::sin(pi * passed(now - blendStart_, kMoodHop));
  if (surroundings.relief && isWithin(now - *surroundings.relief, kReliefHop)) {
    pose.dy += 7 * std::sin(-2 * pi * (now - *surroundings.relief));
  }
  if (reacting_ && isWithin(now - reacting_->start, kSquash)) {
    const double amount = reacting_->reaction == Reaction::surprise ? -0.08 : 0.07;
    pose.squash += std::sin(2 * pi * (now - reacting_->start)) * amount;
  }
  if (surroundings.gaze) pose.look = look(*surroundings.gaze);
  if (surroundings.steaming) pose.steam = 1;
  return pose;
}

Mascot::Features Mascot::features(double now, const Surroundings& surroundings) const {
  Features face = Features::of(mood_);
  if (blendFrom_) {
    const double u = passed(now - blendStart_, kBlend);
    face = Features::mix(Features::of(*blendFrom_), face, smoothstep(u));
  }
  if (surroundings.relief) {
    const double amount = pulse(now - *surroundings.relief, kRelief);
    if (amount > 0) face = Features::mix(face, Features::of(Mood::relieved), amount);
  }
  const double asleep = sleepiness(mood_, surroundings);
  if (asleep > 0) face = Features::mix(face, face.asleep(), asleep);
  if (reacting_) {
    const double amount = pulse(now - reacting_->start, kReaction);
    if (amount > 0) {
      switch (reacting_->reaction) {
        case Reaction::giggle:
          face.happyEyes = std::max(face.happyEyes, amount);
          break;
        case Reaction::wink:
          face.wink = amount;
          break;
        case Reaction::surprise:
          face.surprise = amount;
          break;
      }
    }
  }
  return face;
}

bool Mascot::isQuick(double now, const Surroundings& surroundings) const {
  const double asleep = sleepiness(mood_, surroundings);
  return (isHovering_ && passed(now - hoverStart_, kHover) < 1) ||
         (blendFrom_ && passed(now - blendStart_, kBlend) < 1) ||
         (surroundings.relief && isWithin(now - *surroundings.relief, kRelief)) ||
         (reacting_ && isWithin(now - reacting_->start, kReaction)) || (asleep > 0 && asleep < 1) ||
         Pose::of(mood_, now + seed_).shake != 0;
}

double Mascot::untilSlowFrame(double now) {
  const double until = untilSlowMoment(now);
  return until <= kSlowFrame + kEarly ? std::clamp(until, kQuickFrame, kSlowFrame) : kQuickFrame;
}

double Mascot::untilMoved(double now, double scale) const {
  const Pose pose = Pose::of(mood_, now + seed_);
  double until = untilSlowMoment(now);
  for (int frame = 1; frame < kMostSlowFrames; ++frame, until += kSlowFrame) {
    if (pose.distanceTo(Pose::of(mood_, now + until + seed_)) * scale >= kStep) break;
  }
  return until;
}

double Mascot::untilNextFrame(double now, const Surroundings& surroundings, double scale) const {
  if (isQuick(now, surroundings)) return kQuickFrame;
  const double untilBlink = Pose::nextBlink(now + seed_) - (now + seed_);
  if (untilBlink <= 0) return kBlinkFrame;
  const double blink = std::max(untilBlink, kQuickFrame);
  // Steam and the letters of sleep rise without an end.
  const bool isRising = surroundings.steaming || sleepiness(mood_, surroundings) > 0;
  if (isRising) return std::min(blink, untilSlowFrame(now));
  if (mood_ != Mood::logo) return std::min(blink, untilMoved(now, scale));
  // Falling asleep begins without a word from anybody.
  if (!surroundings.idle) return blink;
  return std::clamp(kIdleBeforeSleep - *surroundings.idle, kQuickFrame, blink);
}

}  // namespace embrix
