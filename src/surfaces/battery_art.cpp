#include "surfaces/battery_art.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace embrix {

namespace {

// What is no number, and what lies outside of a battery, is brought into it.
double inBattery(double level) {
  return std::isnan(level) ? 0 : std::clamp(level, 0.0, 1.0);
}

Path bolt(Point center, double scale) {
  Path path;
  path.addLines({{6, -26}, {-16, 5}, {-2, 5}, {-6, 26}, {16, -6}, {2, -6}}).close();
  Path placed;
  placed.addPath(
      path, Transform::translation(center.x, center.y).after(Transform::scaling(scale, scale)));
  return placed;
}

}  // namespace

EX::Hue BatteryArt::barHue(double level) {
  return level <= kLow ? EX::Hue::coral : EX::Hue::mint;
}

Picture BatteryArt::draw(double level, double pulse, bool powered) {
  constexpr Rect kBody = {8, 4, 224, 132};
  constexpr double kBodyRadius = 30;
  constexpr double kLine = 4;
  constexpr double kNubRise = 2;  // wider than the outline on its far side
  constexpr Rect kBar = {22, 18, 196, 104};
  constexpr double kBarRadius = 18;

  const double shown = inBattery(level);
  const Color ink = EX::color(EX::Hue::inkFixed);
  Picture picture;
  picture.fill(Path().addRoundedRect({230, 48, 16 + kNubRise, 44}, 8), ink);
  picture.fill(Path().addRoundedRect(kBody, kBodyRadius), EX::kWhite);
  if (shown > 0) {
    const Rect bar = {kBar.x, kBar.y, kBar.width * shown, kBar.height};
    picture.fill(Path().addRoundedRect(bar, kBarRadius), EX::color(barHue(shown)));
  }
  picture.stroke(Path().addRoundedRect(kBody, kBodyRadius), ink, kLine);
  if (powered) {
    const double swell = std::clamp(pulse, 0.0, 1.0);
    Path mark = bolt(kBody.center(), 1 + 0.12 * swell);
    picture.fill(mark, EX::color(EX::Hue::yellow));
    picture.stroke(std::move(mark), ink, kLine);
  }
  return picture;
}

Picture BatteryGlyph::draw(double fraction, Color ink) {
  constexpr double kLine = 1.5;
  constexpr Rect kBody = {kLine / 2, kLine / 2, kWidth - 3 - kLine, kHeight - kLine};
  constexpr double kInset = 2.25;
  const double shown = inBattery(fraction);
  Picture picture;
  picture.stroke(Path().addRoundedRect(kBody, 3.5), ink, kLine);
  picture.fill(Path().addRoundedRect({kWidth - 2.5, kHeight / 2 - 2, 2, 4}, 1), ink);
  if (shown > 0) {
    const double full = kBody.width - 2 * kInset + kLine;
    picture.fill(Path().addRoundedRect({kBody.x + kInset - kLine / 2, kBody.y + kInset - kLine / 2,
                                        full * shown, kBody.height - 2 * kInset + kLine},
                                       1.5),
                 EX::color(BatteryArt::barHue(shown)));
  }
  return picture;
}

}  // namespace embrix
