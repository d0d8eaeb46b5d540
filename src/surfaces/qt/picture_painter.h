// Paints the pictures that the surfaces are made of. Main thread, or wherever the painter may be
// used.
#pragma once

#include <QPainter>

#include "surfaces/picture.h"
#include "surfaces/symbol.h"

namespace embrix {

struct PicturePainter {
  // In the painter's own units; a colour's opacity is that of the picture.
  static void paint(QPainter& painter, const Picture& picture);

  // The symbol in a square of `size` at the painter's origin. `weight` scales its strokes: 1 is
  // regular, 1.35 semibold, 1.6 heavy.
  static void paintSymbol(QPainter& painter, std::string_view name, double size,
                          const QColor& color, double weight = 1);

  static QPainterPath toQPath(const Path& path);
};

}  // namespace embrix
