// The small drawings that stand beside words and on buttons, each under the name that the records
// carry. Pure geometry in a square of 24 by 24 units. Plain functions; any thread.
#pragma once

#include <string_view>
#include <vector>

#include "surfaces/path.h"

namespace embrix {

class Symbol {
 public:
  static constexpr double kUnits = 24;  // edge of the square

  // A part is either filled or stroked, in one colour that the surface gives. What is filled may
  // have holes: where a path lies over itself an even number of times nothing is drawn.
  struct Part {
    Path path;
    double lineWidth = 0;  // units at regular weight; 0 for what is filled
  };

  // Of a name that is not known, a plain dot: a row never stands without a mark.
  static std::vector<Part> parts(std::string_view name);

  static bool isKnown(std::string_view name);
  static std::vector<std::string_view> names();
};

}  // namespace embrix
