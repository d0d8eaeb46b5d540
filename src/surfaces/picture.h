// What is to be drawn, as data: shapes from back to front. Whoever paints it decides nothing, so a
// picture can be tested without a screen. Plain values; any thread.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "surfaces/color.h"
#include "surfaces/path.h"

namespace embrix {

// A path that is filled, then stroked with round ends and joins.
struct Shape {
  Path path;
  Transform transform;  // of the path, and of the width of its stroke
  std::optional<Color> fill;
  std::optional<Color> stroke;
  double lineWidth = 0;  // in the path's units

  bool operator==(const Shape&) const = default;
};

struct Picture {
  std::vector<Shape> shapes;

  void fill(Path path, Color color, const Transform& transform = {}) {
    shapes.push_back({.path = std::move(path), .transform = transform, .fill = color});
  }
  void stroke(Path path, Color color, double width, const Transform& transform = {}) {
    shapes.push_back(
        {.path = std::move(path), .transform = transform, .stroke = color, .lineWidth = width});
  }

  bool operator==(const Picture&) const = default;
};

}  // namespace embrix
