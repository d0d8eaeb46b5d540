#include "surfaces/app_icon_art.h"

#include <utility>

#include "surfaces/mascot_figure.h"
#include "surfaces/palette.h"

namespace embrix {

Picture IconArt::draw() {
  // The grid of the platform's icons: a tile of 824 within 1024, its corners rounded by 185.4.
  constexpr double kMargin = 100;
  constexpr double kTile = kUnits - 2 * kMargin;
  constexpr double kRadius = 185.4;
  constexpr double kFigure = 600;

  Picture icon;
  icon.fill(Path().addRoundedRect({kMargin, kMargin, kTile, kTile}, kRadius),
            EX::color(EX::Hue::inkFixed));
  // The figure is drawn wide and flat at its top, so its middle lies below that of its square.
  const double margin = (kUnits - kFigure) / 2;
  const Transform place = Transform::translation(margin, margin - kFigure * 0.03);
  Picture figure =
      MascotFigure::draw(kFigure / MascotFigure::kUnits, 5, MascotFeatures::of(MascotMood::logo),
                         MascotPose::of(MascotMood::logo, 0));
  for (Shape& shape : figure.shapes) {
    shape.transform = place.after(shape.transform);
    icon.shapes.push_back(std::move(shape));
  }
  return icon;
}

}  // namespace embrix
