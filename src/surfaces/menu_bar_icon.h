// The flame of the menu bar: how it looks at each load level and in each frame of its flicker. Pure
// geometry; whoever paints the images keeps them. Plain functions; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "model/load_level.h"
#include "surfaces/color.h"
#include "surfaces/geometry.h"

namespace embrix {

struct MenuBarIcon {
  // How one frame of the flicker is drawn from the still image.
  struct Flicker {
    double heightScale = 1;
    double offset = 0;  // points to the right

    bool operator==(const Flicker&) const = default;
  };

  // An image without frame is the still one.
  struct Image {
    LoadLevel level = LoadLevel::calm;
    std::optional<int> frame;

    bool operator==(const Image&) const = default;
  };

  static constexpr double kPointSize = 13;
  static constexpr int kFrames = 4;
  static constexpr std::string_view kDescription = "Embrix";  // for those who do not see it

  // The outline while all is calm, else the filled flame.
  static std::string_view symbol(LoadLevel level);

  // Absent for an image in template form, which takes the colour of the bar that it stands in.
  static std::optional<Color> color(LoadLevel level);

  // Any frame number, reduced to those that there are.
  static Flicker flicker(int frame);

  // Where the still image stands in a canvas of its own size: on its base, grown or sunk.
  static Rect place(const Flicker& flicker, double width, double height);

  // What a finished flicker image is kept under: "warm-2", with the number as it is asked for.
  static std::string key(LoadLevel level, int frame);
};

}  // namespace embrix
