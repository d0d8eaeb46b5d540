#include "surfaces/geometry.h"

#include <cmath>
#include <numbers>

namespace embrix {

namespace {

Transform around(Point center, const Transform& turn) {
  return Transform::translation(center.x, center.y)
      .after(turn)
      .after(Transform::translation(-center.x, -center.y));
}

}  // namespace

Transform Transform::translation(double x, double y) {
  return {.dx = x, .dy = y};
}

Transform Transform::scaling(double x, double y, Point center) {
  return around(center, {.a = x, .d = y});
}

Transform Transform::rotation(double degrees, Point center) {
  const double angle = degrees * std::numbers::pi / 180;
  const double sine = std::sin(angle);
  const double cosine = std::cos(angle);
  return around(center, {.a = cosine, .b = sine, .c = -sine, .d = cosine});
}

Transform Transform::after(const Transform& first) const {
  const Point moved = (*this)({first.dx, first.dy});
  return {.a = a * first.a + c * first.b,
          .b = b * first.a + d * first.b,
          .c = a * first.c + c * first.d,
          .d = b * first.c + d * first.d,
          .dx = moved.x,
          .dy = moved.y};
}

Point Transform::operator()(Point point) const {
  return {a * point.x + c * point.y + dx, b * point.x + d * point.y + dy};
}

}  // namespace embrix
