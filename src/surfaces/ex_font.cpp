#include "surfaces/ex_font.h"

#include <algorithm>

#include <fmt/format.h>

namespace embrix {

namespace {

// What the typeface was drawn for, points.
constexpr double kLeastOpticalSize = 9;
constexpr double kLargestOpticalSize = 40;

std::string_view word(EXFont::Kind kind) {
  switch (kind) {
    case EXFont::Kind::display:
      return "display";
    case EXFont::Kind::text:
      return "text";
    case EXFont::Kind::mono:
      return "mono";
  }
  return "text";
}

}  // namespace

std::string_view EXFont::family() const {
  switch (kind) {
    case Kind::display:
      return "Unbounded";
    case Kind::text:
      return "DM Sans";
    case Kind::mono:
      return "DM Mono";
  }
  return "DM Sans";
}

std::vector<EXFont::Axis> EXFont::axes() const {
  switch (kind) {
    case Kind::display:
      return {{"wght", static_cast<double>(weight)}};
    case Kind::text:
      return {{"wght", static_cast<double>(weight)},
              {"opsz", std::clamp(size, kLeastOpticalSize, kLargestOpticalSize)}};
    case Kind::mono:
      return {};
  }
  return {};
}

std::string EXFont::key() const {
  return fmt::format("{}|{}|{}", word(kind), size, weight);
}

}  // namespace embrix
