// An outline made of straight lines and cubic curves, as every toolkit can draw it. Plain values;
// any thread.
#pragma once

#include <vector>

#include "surfaces/geometry.h"

namespace embrix {

class Path {
 public:
  struct Element {
    enum class Kind { move, line, curve, close };

    Kind kind = Kind::move;
    Point control1;  // of a curve only
    Point control2;  // of a curve only
    Point to;        // of a close, where the piece began

    bool operator==(const Element&) const = default;
  };

  Path& moveTo(Point to);
  Path& lineTo(Point to);
  Path& curveTo(Point control1, Point control2, Point to);
  // With one control point; kept as the cubic curve of the same course.
  Path& quadTo(Point control, Point to);
  Path& close();

  Path& addEllipse(Rect bounds);
  // The radius is cut down to half of the shorter side.
  Path& addRoundedRect(Rect bounds, double radius);
  // One stroke from the first point to the last.
  Path& addLines(const std::vector<Point>& points);
  Path& addPath(const Path& other, const Transform& transform);

  // The first part of the outline, by the number of its pieces: 0.5 of two curves is the first of
  // them. A piece that is cut is split where its own parameter says, so it keeps its course.
  Path trimmed(double fraction) const;

  const std::vector<Element>& elements() const { return elements_; }
  bool isEmpty() const { return elements_.empty(); }

  // The smallest rectangle around all points and control points.
  Rect bounds() const;

  bool operator==(const Path&) const = default;

 private:
  Point current() const { return elements_.empty() ? Point{} : elements_.back().to; }

  std::vector<Element> elements_;
};

}  // namespace embrix
