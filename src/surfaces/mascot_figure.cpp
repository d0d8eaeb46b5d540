#include "surfaces/mascot_figure.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "surfaces/palette.h"

namespace embrix {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kShown = 0.01;  // what is fainter is left out
constexpr Point kBase = {60, 112};
constexpr Point kTuftFoot = {60, 16};
constexpr double kEyeY = 60;
constexpr double kLeftEyeX = 46;
constexpr double kRightEyeX = 74;

double phase(double time, double period) {
  return time / period - std::floor(time / period);
}

Color ink(double opacity = 1) {
  return EX::color(EX::Hue::inkFixed).withOpacity(opacity);
}

Path ellipseAround(Point center, double rx, double ry) {
  return Path().addEllipse({center.x - rx, center.y - ry, 2 * rx, 2 * ry});
}

// Draws in the order in which the parts lie over one another.
class Drawing {
 public:
  Drawing(double scale, double line, const MascotFeatures& features, const MascotPose& pose)
      : scale_(Transform::scaling(scale, scale)),
        line_(line),
        features_(features),
        pose_(pose),
        body_(scale_.after(Transform::translation(pose.shake, pose.dy))
                  .after(Transform::scaling(1 + pose.squash, 1 - pose.squash, kBase))
                  .after(Transform::rotation(pose.tilt, kBase))) {}

  Picture make() {
    if (pose_.steam > 0) steam();
    if (features_.zzz > 0.05) zzz();
    if (features_.tuft > kShown) tuft();
    picture_.fill(MascotFigure::face(),
                  {features_.fill[0], features_.fill[1], features_.fill[2], 1}, body_);
    picture_.stroke(MascotFigure::face(), ink(), line_, body_);
    if (features_.blush > kShown) blush();
    eyes();
    if (features_.brows > kShown) brows();
    mouth();
    if (features_.sweat > kShown && pose_.drip) sweat();
    return std::move(picture_);
  }

 private:
  // Two wisps that sway as they rise from the head.
  void steam() {
    constexpr double kRhythm = 1.4;   // seconds
    constexpr double kLength = 0.85;  // of the way that it rises
    constexpr double kSway = 5;
    const double sway = kSway * std::sin(kTurn * pose_.time / kRhythm);
    for (const double x : {32.0, 88.0}) {
      Path wisp;
      wisp.moveTo({x, 20}).quadTo({x - 6, 14}, {x, 8}).quadTo({x + 6, 2}, {x + sway, -8});
      picture_.stroke(wisp.trimmed(kLength), ink(), line_, scale_);
    }
  }

  // Three letters, one after the other.
  void zzz() {
    constexpr double kCycle = 2.4;  // seconds
    constexpr double kLife = 2.2;
    constexpr double kFade = 0.25;  // of a life, at either end
    for (const double delay : {0.0, 0.8, 1.6}) {
      const double life = phase(pose_.time + delay, kCycle) * kCycle / kLife;
      if (life >= 1) continue;
      const double size = 4.5 + 3 * life;
      const double left = 92 + 12 * life + 2 * std::sin(kTurn * life);
      const double top = 26 - 34 * life;
      const double opacity = features_.zzz * std::min({1.0, life / kFade, (1 - life) / kFade});
      picture_.stroke(
          Path().addLines(
              {{left, top}, {left + size, top}, {left, top + size}, {left + size, top + size}}),
          ink(opacity), line_ * 0.7, scale_);
    }
  }

  void tuft() {
    Path leaf;
    leaf.moveTo({60, 14}).curveTo({64, 6}, {72, 4}, {76, 6}).curveTo({73, 18}, {70, 9}, {60, 14});
    leaf.close();
    const Transform swing = body_.after(Transform::rotation(pose_.tuft, kTuftFoot));
    picture_.fill(leaf, ink(features_.tuft), swing);
    picture_.stroke(std::move(leaf), ink(features_.tuft), line_ / 2, swing);
  }

  void blush() {
    const Color color = EX::color(EX::Hue::blush).withOpacity(features_.blush);
    picture_.fill(Path().addEllipse({29, 68, 12, 12}), color, body_);
    picture_.fill(Path().addEllipse({79, 68, 12, 12}), color, body_);
  }

  void arch(double centerX) {
    const double x = centerX + pose_.look.x;
    const double y = pose_.look.y;
    picture_.stroke(Path().moveTo({x - 6, 58 + y}).quadTo({x, 50 + y}, {x + 6, 58 + y}), ink(),
                    line_, body_);
  }

  void openEye(double centerX) {
    const Point center = {centerX + pose_.look.x, kEyeY + pose_.look.y};
    picture_.fill(ellipseAround(center, features_.eyeRX * pose_.eyeScale,
                                features_.eyeRY * pose_.eyeScale * pose_.eyes),
                  ink(), body_);
    if (features_.glints > kShown && pose_.eyes > 0.6) {
      picture_.fill(ellipseAround({center.x - 0.1, center.y - 4.1}, 3.2, 3.2),
                    EX::kWhite.withOpacity(features_.glints), body_);
    }
  }

  void eyes() {
    const bool areHappy = features_.happyEyes > 0.5;
    areHappy || features_.wink > kShown ? arch(kLeftEyeX) : openEye(kLeftEyeX);
    areHappy ? arch(kRightEyeX) : openEye(kRightEyeX);
  }

  void brows() {
    const double lift = pose_.brow;
    const Color color = ink(features_.brows);
    picture_.stroke(Path().moveTo({38, 48 - lift}).lineTo({52, 52 - lift}), color, line_, body_);
    picture_.stroke(Path().moveTo({82, 48 - lift}).lineTo({68, 52 - lift}), color, line_, body_);
  }

  void mouth() {
    const auto& m = features_.mouth;
    const bool isRound = features_.surprise > kShown;
    const double curve = isRound ? 1 - features_.surprise : 1;
    if (curve > kShown) {
      picture_.stroke(Path().moveTo({m[0], m[1]}).quadTo({m[4], m[5]}, {m[2], m[3]}), ink(curve),
                      line_, body_);
    }
    if (isRound) {
      picture_.fill(Path().addEllipse({55, 74, 10, 12}), ink(features_.surprise), body_);
    }
  }

  void sweat() {
    constexpr double kSlide = 22;
    constexpr double kFadeFrom = 0.85;  // of the phase
    constexpr double kFaintest = 0.3;
    const double drip = *pose_.drip;
    const double way = std::min(drip / kFadeFrom, 1.0);
    const double gone = std::max((drip - kFadeFrom) / (1 - kFadeFrom), 0.0);
    const double opacity = features_.sweat * (kFaintest + (1 - kFaintest) * way) * (1 - gone);
    Path drop;
    drop.moveTo({95, 40})
        .curveTo({97, 44}, {100, 47}, {100, 51})
        .curveTo({100, 57}, {90, 57}, {90, 51})
        .curveTo({90, 47}, {93, 44}, {95, 40});
    drop.close();
    const Transform slide = body_.after(Transform::translation(0, kSlide * way));
    picture_.fill(drop, EX::color(EX::Hue::sky).withOpacity(opacity), slide);
    picture_.stroke(std::move(drop), ink(opacity), line_ / 2, slide);
  }

  Transform scale_;
  double line_;
  const MascotFeatures& features_;
  const MascotPose& pose_;
  Transform body_;
  Picture picture_;
};

}  // namespace

Path MascotFigure::face() {
  Path path;
  path.moveTo({60, 16})
      .curveTo({87, 16}, {106, 35}, {107, 61})
      .curveTo({108, 90}, {88, 112}, {60, 112})
      .curveTo({32, 112}, {12, 90}, {13, 61})
      .curveTo({14, 35}, {33, 16}, {60, 16})
      .close();
  return path;
}

Picture MascotFigure::draw(double scale, double line, const MascotFeatures& features,
                           const MascotPose& pose) {
  return Drawing(scale, line, features, pose).make();
}

}  // namespace embrix
