#include "surfaces/mascot_features.h"

#include <cmath>
#include <cstddef>

namespace embrix {

namespace {

constexpr std::array<double, 3> kWhite = {1, 1, 1};
constexpr std::array<double, 3> kYellow = {1, 0.831, 0.322};
constexpr std::array<double, 3> kMint = {0.239, 0.859, 0.706};

constexpr double kSleepyLids = 0.3;  // of the eyes' height
constexpr std::array<double, 6> kSleepyMouth = {54, 79, 66, 79, 60, 81};

// At 0 and 1 exactly the one and the other.
double mixed(double a, double b, double t) {
  return std::lerp(a, b, t);
}

template <std::size_t count>
std::array<double, count> mixed(const std::array<double, count>& a,
                                const std::array<double, count>& b, double t) {
  std::array<double, count> result{};
  for (std::size_t i = 0; i < count; ++i) result[i] = mixed(a[i], b[i], t);
  return result;
}

}  // namespace

MascotFeatures MascotFeatures::of(MascotMood mood) {
  switch (mood) {
    case MascotMood::happy:
      return {.fill = kWhite,
              .tuft = 1,
              .blush = 1,
              .glints = 1,
              .eyeRX = 5,
              .eyeRY = 7,
              .mouth = {50, 77, 70, 77, 60, 86}};
    case MascotMood::sweaty:
      return {.fill = kWhite,
              .tuft = 1,
              .blush = 1,
              .glints = 1,
              .eyeRX = 5,
              .eyeRY = 7,
              .sweat = 1,
              .mouth = {50, 77, 70, 79, 60, 80}};
    case MascotMood::stressed:
      return {.fill = kYellow,
              .tuft = 1,
              .eyeRX = 5,
              .eyeRY = 7,
              .brows = 1,
              .sweat = 1,
              .mouth = {50, 82, 70, 82, 60, 75}};
    case MascotMood::relieved:
      return {
          .fill = kMint, .happyEyes = 1, .eyeRX = 5, .eyeRY = 7, .mouth = {46, 74, 74, 74, 60, 88}};
    case MascotMood::logo:
      return {.fill = kMint, .eyeRX = 6, .eyeRY = 8, .mouth = {48, 78, 72, 78, 60, 88}};
  }
  return {};
}

MascotFeatures MascotFeatures::mix(const MascotFeatures& a, const MascotFeatures& b, double t) {
  return {.fill = mixed(a.fill, b.fill, t),
          .tuft = mixed(a.tuft, b.tuft, t),
          .blush = mixed(a.blush, b.blush, t),
          .glints = mixed(a.glints, b.glints, t),
          .happyEyes = mixed(a.happyEyes, b.happyEyes, t),
          .eyeRX = mixed(a.eyeRX, b.eyeRX, t),
          .eyeRY = mixed(a.eyeRY, b.eyeRY, t),
          .brows = mixed(a.brows, b.brows, t),
          .sweat = mixed(a.sweat, b.sweat, t),
          .mouth = mixed(a.mouth, b.mouth, t),
          .wink = mixed(a.wink, b.wink, t),
          .surprise = mixed(a.surprise, b.surprise, t),
          .zzz = mixed(a.zzz, b.zzz, t)};
}

MascotFeatures MascotFeatures::asleep() const {
  MascotFeatures face = *this;
  face.glints = 0;
  face.happyEyes = 0;
  face.eyeRY *= kSleepyLids;
  face.mouth = kSleepyMouth;
  face.zzz = 1;
  return face;
}

MascotFeatures MascotFeatures::frozen(MascotMood mood, std::optional<MascotFrozenState> state) {
  MascotFeatures face = of(mood);
  if (!state) return face;
  switch (*state) {
    case MascotFrozenState::relief:
      return of(MascotMood::relieved);
    case MascotFrozenState::dozing:
      return face.asleep();
    case MascotFrozenState::wink:
      face.wink = 1;
      break;
    case MascotFrozenState::surprise:
      face.surprise = 1;
      break;
    case MascotFrozenState::steam:
      break;
  }
  return face;
}

}  // namespace embrix
