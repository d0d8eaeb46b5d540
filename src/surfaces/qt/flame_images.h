// The finished images of the menu bar item: the flame at each level and frame, with watts below or
// beside it. Made once and kept. Main thread only.
#pragma once

#include <map>
#include <string>

#include <QIcon>

#include "surfaces/menu_bar_label.h"

namespace embrix {

class FlameImages {
 public:
  enum class Shape {
    square,  // for trays that give every item a square: the watts stand below the flame
    bar,     // for a menu bar: the watts stand beside it
  };

  explicit FlameImages(Shape shape) : shape_(shape) {}

  // The same one again for an equal label.
  const QIcon& icon(const MenuBarLabel::Content& label);

  // One picture of it, `height` pixels high.
  QPixmap draw(const MenuBarLabel::Content& label, int height) const;

 private:
  Shape shape_;
  std::map<std::string, QIcon> icons_;
};

}  // namespace embrix
