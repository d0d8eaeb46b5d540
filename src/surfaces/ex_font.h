// A typeface at a size and a weight, as the surfaces ask for it. The font itself is made where the
// toolkit is known. Plain values; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct EXFont {
  enum class Kind { display, text, mono };

  // A variation of a typeface that has such an axis.
  struct Axis {
    std::string_view tag;  // four letters
    double value = 0;

    bool operator==(const Axis&) const = default;
  };

  Kind kind = Kind::text;
  double size = 13;             // points
  int weight = 400;             // 100 to 900
  bool hasEqualDigits = false;  // text whose figures change while somebody looks

  std::string_view family() const;
  // Empty for a typeface that comes as it is.
  std::vector<Axis> axes() const;
  // The file that is cut nearest to it, as tools/fonts names it without its ending, and the weight
  // of that file.
  struct Cut {
    std::string file;
    int weight = 400;

    bool operator==(const Cut&) const = default;
  };
  Cut cut() const;

  // What a font that was made is kept under: "text|13.5|700".
  std::string key() const;

  bool operator==(const EXFont&) const = default;
};

}  // namespace embrix
