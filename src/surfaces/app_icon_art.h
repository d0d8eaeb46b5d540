// The application's icon as a picture: a rounded tile with the mascot on it. Plain functions; any
// thread.
#pragma once

#include "surfaces/picture.h"

namespace embrix {

struct IconArt {
  static constexpr double kUnits = 1024;  // edge of the square

  static Picture draw();
};

}  // namespace embrix
