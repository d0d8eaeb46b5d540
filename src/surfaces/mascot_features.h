// What varies from face to face of the mascot, and from mood to mood. Everything can be blended. In
// units of the 120-unit drawing where lengths are meant. Plain values; any thread.
#pragma once

#include <array>
#include <optional>

namespace embrix {

enum class MascotMood {
  happy,
  sweaty,
  stressed,
  relieved,  // something was just freed
  logo,      // the product's mark
};

inline constexpr std::array kMascotMoods = {MascotMood::happy, MascotMood::sweaty,
                                            MascotMood::stressed, MascotMood::relieved,
                                            MascotMood::logo};

// A look that a still figure is held at.
enum class MascotFrozenState { relief, dozing, wink, surprise, steam };

// What a click brings about.
enum class MascotReaction { giggle, wink, surprise };

struct MascotFeatures {
  std::array<double, 3> fill{};  // of the body: red, green, blue, each 0 to 1
  double tuft = 0;               // 0 to 1, how far it is shown
  double blush = 0;              // 0 to 1
  double glints = 0;             // 0 to 1, the highlight in the eyes
  double happyEyes = 0;          // 0 to 1; above 0.5 the eyes are arches
  double eyeRX = 0;
  double eyeRY = 0;
  double brows = 0;  // 0 to 1
  double sweat = 0;  // 0 to 1
  // One quadratic curve: start x, y, end x, y, control x, y.
  std::array<double, 6> mouth{};
  double wink = 0;      // 0 to 1
  double surprise = 0;  // 0 to 1
  double zzz = 0;       // 0 to 1

  static MascotFeatures of(MascotMood mood);

  // Each number on the straight line from `a` at 0 to `b` at 1.
  static MascotFeatures mix(const MascotFeatures& a, const MascotFeatures& b, double t);

  // The same face asleep.
  MascotFeatures asleep() const;

  // The mood's face, held in that state.
  static MascotFeatures frozen(MascotMood mood, std::optional<MascotFrozenState> state);

  bool operator==(const MascotFeatures&) const = default;
};

}  // namespace embrix
