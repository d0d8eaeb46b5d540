#include "surfaces/path.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace embrix {

namespace {

// Control points so far along the tangent make a cubic curve a quarter of a circle, to 0.03 %.
constexpr double kArc = 0.5522847498;

Point between(Point a, Point b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

}  // namespace

Path& Path::moveTo(Point to) {
  elements_.push_back({.kind = Element::Kind::move, .to = to});
  return *this;
}

Path& Path::lineTo(Point to) {
  elements_.push_back({.kind = Element::Kind::line, .to = to});
  return *this;
}

Path& Path::curveTo(Point control1, Point control2, Point to) {
  elements_.push_back({Element::Kind::curve, control1, control2, to});
  return *this;
}

Path& Path::quadTo(Point control, Point to) {
  return curveTo(between(current(), control, 2.0 / 3), between(to, control, 2.0 / 3), to);
}

Path& Path::close() {
  const auto start = std::find_if(elements_.rbegin(), elements_.rend(), [](const Element& element) {
    return element.kind == Element::Kind::move;
  });
  if (start != elements_.rend()) {
    elements_.push_back({.kind = Element::Kind::close, .to = start->to});
  }
  return *this;
}

Path& Path::addEllipse(Rect bounds) {
  const Point center = bounds.center();
  const double rx = bounds.width / 2;
  const double ry = bounds.height / 2;
  const auto at = [&](double x, double y) { return Point{center.x + x * rx, center.y + y * ry}; };
  return moveTo(at(0, -1))
      .curveTo(at(kArc, -1), at(1, -kArc), at(1, 0))
      .curveTo(at(1, kArc), at(kArc, 1), at(0, 1))
      .curveTo(at(-kArc, 1), at(-1, kArc), at(-1, 0))
      .curveTo(at(-1, -kArc), at(-kArc, -1), at(0, -1))
      .close();
}

Path& Path::addRoundedRect(Rect bounds, double radius) {
  const double r = std::clamp(radius, 0.0, std::min(bounds.width, bounds.height) / 2);
  const double k = r * (1 - kArc);
  const double left = bounds.x;
  const double top = bounds.y;
  const double right = left + bounds.width;
  const double bottom = top + bounds.height;
  return moveTo({left + r, top})
      .lineTo({right - r, top})
      .curveTo({right - k, top}, {right, top + k}, {right, top + r})
      .lineTo({right, bottom - r})
      .curveTo({right, bottom - k}, {right - k, bottom}, {right - r, bottom})
      .lineTo({left + r, bottom})
      .curveTo({left + k, bottom}, {left, bottom - k}, {left, bottom - r})
      .lineTo({left, top + r})
      .curveTo({left, top + k}, {left + k, top}, {left + r, top})
      .close();
}

Path& Path::addLines(const std::vector<Point>& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i == 0) {
      moveTo(points[i]);
    } else {
      lineTo(points[i]);
    }
  }
  return *this;
}

Path& Path::addPath(const Path& other, const Transform& transform) {
  elements_.reserve(elements_.size() + other.elements_.size());
  for (const Element& element : other.elements_) {
    elements_.push_back({element.kind, transform(element.control1), transform(element.control2),
                         transform(element.to)});
  }
  return *this;
}

Path Path::trimmed(double fraction) const {
  const auto isPiece = [](const Element& element) { return element.kind != Element::Kind::move; };
  const auto pieces = std::count_if(elements_.begin(), elements_.end(), isPiece);
  double left = std::clamp(fraction, 0.0, 1.0) * static_cast<double>(pieces);

  Path result;
  for (const Element& element : elements_) {
    const double part = isPiece(element) ? std::min(left, 1.0) : 1;
    if (part <= 0) break;
    if (part >= 1) {
      result.elements_.push_back(element);
    } else if (element.kind != Element::Kind::curve) {
      result.lineTo(between(result.current(), element.to, part));
    } else {
      const Point from = result.current();
      const Point a = between(from, element.control1, part);
      const Point b = between(element.control1, element.control2, part);
      const Point c = between(element.control2, element.to, part);
      const Point ab = between(a, b, part);
      const Point bc = between(b, c, part);
      result.curveTo(a, ab, between(ab, bc, part));
    }
    if (isPiece(element)) left -= 1;
  }
  return result;
}

Rect Path::bounds() const {
  if (elements_.empty()) return {};
  Point least = elements_.front().to;
  Point most = least;
  const auto take = [&](Point point) {
    least = {std::min(least.x, point.x), std::min(least.y, point.y)};
    most = {std::max(most.x, point.x), std::max(most.y, point.y)};
  };
  for (const Element& element : elements_) {
    take(element.to);
    if (element.kind != Element::Kind::curve) continue;
    take(element.control1);
    take(element.control2);
  }
  return {least.x, least.y, most.x - least.x, most.y - least.y};
}

}  // namespace embrix
