#include "surfaces/ex_font.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include <fmt/format.h>

namespace embrix {

namespace {

// What the typeface was drawn for, points.
constexpr double kLeastOpticalSize = 9;
constexpr double kLargestOpticalSize = 40;

// What tools/cut_fonts.py cuts.
constexpr std::array kOpticalSizes = {9, 14, 24, 40};
constexpr std::array kWeights = {400, 500, 600, 700};
constexpr std::array kHeadlines = {600, 700};

// The first of equally near ones.
template <std::size_t count>
int nearestOf(const std::array<int, count>& choices, double wanted) {
  return *std::min_element(choices.begin(), choices.end(), [wanted](int a, int b) {
    return std::abs(a - wanted) < std::abs(b - wanted);
  });
}

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

EXFont::Cut EXFont::cut() const {
  switch (kind) {
    case Kind::display: {
      const int nearest = nearestOf(kHeadlines, weight);
      return {fmt::format("unbounded-{}", nearest), nearest};
    }
    case Kind::mono:
      return {"dm-mono-400", 400};
    case Kind::text:
      break;
  }
  const int nearest = nearestOf(kWeights, weight);
  if (hasEqualDigits) return {fmt::format("dm-sans-digits-{}", nearest), nearest};
  return {fmt::format("dm-sans-{}-{}", nearestOf(kOpticalSizes, size), nearest), nearest};
}

std::string EXFont::key() const {
  return fmt::format("{}|{}|{}{}", word(kind), size, weight, hasEqualDigits ? "|digits" : "");
}

}  // namespace embrix
