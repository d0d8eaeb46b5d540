// The fonts of the surfaces as the toolkit knows them. Each is made once and kept; a typeface is
// read when the first font of it is asked for. Main thread only.
#pragma once

#include <QFont>

#include "surfaces/ex_font.h"

namespace embrix {

struct Typefaces {
  // Its size is in points of the drawing, whatever the screen's resolution: as many device-
  // independent pixels.
  static const QFont& make(const EXFont& font);
};

}  // namespace embrix
