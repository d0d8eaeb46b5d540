// Points, rectangles and affine transforms of what the surfaces draw: x rightwards, y downwards, in
// the units of whoever draws. Plain values; any thread.
#pragma once

namespace embrix {

struct Point {
  double x = 0;
  double y = 0;

  bool operator==(const Point&) const = default;
};

struct Rect {
  double x = 0;  // left edge
  double y = 0;  // top edge
  double width = 0;
  double height = 0;

  Point center() const { return {x + width / 2, y + height / 2}; }
  bool operator==(const Rect&) const = default;
};

// Maps (x, y) to (a·x + c·y + dx, b·x + d·y + dy).
struct Transform {
  double a = 1;
  double b = 0;
  double c = 0;
  double d = 1;
  double dx = 0;
  double dy = 0;

  static Transform translation(double x, double y);
  // Both leave `center` where it is. A rotation of positive degrees turns clockwise.
  static Transform scaling(double x, double y, Point center = {});
  static Transform rotation(double degrees, Point center);

  // What this does to a point that `first` has moved.
  Transform after(const Transform& first) const;
  Point operator()(Point point) const;

  bool operator==(const Transform&) const = default;
};

}  // namespace embrix
