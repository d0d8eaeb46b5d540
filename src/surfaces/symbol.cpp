#include "surfaces/symbol.h"

#include <algorithm>
#include <array>

namespace embrix {

namespace {

using Parts = std::vector<Symbol::Part>;

constexpr double kLine = 2;

Symbol::Part filled(Path path) {
  return {.path = std::move(path)};
}
Symbol::Part stroked(Path path, double width = kLine) {
  return {.path = std::move(path), .lineWidth = width};
}

Path lines(std::initializer_list<Point> points) {
  return Path().addLines(points);
}
Path box(double x, double y, double width, double height, double radius) {
  return Path().addRoundedRect({x, y, width, height}, radius);
}
Path circle(double x, double y, double radius) {
  return Path().addEllipse({x - radius, y - radius, 2 * radius, 2 * radius});
}

Path flameOutline() {
  Path path;
  path.moveTo({13, 2})
      .curveTo({13.4, 5.6}, {19.5, 9.2}, {19.5, 15})
      .curveTo({19.5, 19.3}, {16.2, 22}, {12, 22})
      .curveTo({7.8, 22}, {4.5, 19.3}, {4.5, 15})
      .curveTo({4.5, 12}, {6, 10.2}, {7.2, 8.8})
      .curveTo({7.6, 10.4}, {8.3, 11.4}, {9.4, 12})
      .curveTo({9.2, 8}, {10.2, 4.4}, {13, 2})
      .close();
  return path;
}

Parts flame() {
  return {stroked(flameOutline())};
}

Parts flameFill() {
  Path path = flameOutline();
  // The light heart of the fire.
  path.moveTo({12.2, 13})
      .curveTo({12.6, 14.8}, {15, 15.6}, {15, 17.8})
      .curveTo({15, 19.4}, {13.8, 20.4}, {12, 20.4})
      .curveTo({10.2, 20.4}, {9, 19.4}, {9, 17.8})
      .curveTo({9, 16}, {11.6, 15.4}, {12.2, 13})
      .close();
  return {filled(std::move(path))};
}

Parts xmark() {
  return {stroked(lines({{5.5, 5.5}, {18.5, 18.5}})), stroked(lines({{18.5, 5.5}, {5.5, 18.5}}))};
}

Parts chevronRight() {
  return {stroked(lines({{8.5, 4.5}, {16, 12}, {8.5, 19.5}}))};
}

Parts chevronDown() {
  return {stroked(lines({{4.5, 8.5}, {12, 16}, {19.5, 8.5}}))};
}

Parts checkmark() {
  return {stroked(lines({{4.5, 12.5}, {9.8, 18}, {19.5, 6}}))};
}

Parts arrowUpRight() {
  return {stroked(lines({{6, 18}, {17.5, 6.5}})),
          stroked(lines({{8, 6.5}, {17.5, 6.5}, {17.5, 16}}))};
}

Parts sliders() {
  Parts parts;
  const std::array<double, 3> knobs = {15.5, 8.5, 13};
  for (std::size_t i = 0; i < knobs.size(); ++i) {
    const double y = 5.5 + 6.5 * static_cast<double>(i);
    const double knob = knobs[i];
    parts.push_back(stroked(lines({{3, y}, {knob - 2.4, y}})));
    parts.push_back(stroked(lines({{knob + 2.4, y}, {21, y}})));
    parts.push_back(stroked(circle(knob, y, 2.3)));
  }
  return parts;
}

Parts moonZzz() {
  Path moon;
  moon.moveTo({11, 6})
      .curveTo({6.6, 6.6}, {3, 10}, {3, 14.2})
      .curveTo({3, 18.6}, {6.6, 22}, {11, 22})
      .curveTo({14.8, 22}, {17.8, 19.6}, {18.8, 16.2})
      .curveTo({13, 18.4}, {8.4, 12.6}, {11, 6})
      .close();
  return {stroked(std::move(moon)),
          stroked(lines({{14, 8.5}, {17.5, 8.5}, {14, 12.5}, {17.5, 12.5}}), 1.7),
          stroked(lines({{18.2, 2.5}, {21.8, 2.5}, {18.2, 6.5}, {21.8, 6.5}}), 1.7)};
}

Parts antenna() {
  Parts parts = {filled(circle(12, 12, 2.2)), stroked(lines({{12, 13}, {12, 21}}))};
  const std::array<double, 2> radii = {5, 9};
  for (const double r : radii) {
    const double k = r * 0.7;
    for (const double side : {-1.0, 1.0}) {
      Path arc;
      arc.moveTo({12 + side * k, 12 - k})
          .curveTo({12 + side * (r + r * 0.05), 12 - k * 0.45},
                   {12 + side * (r + r * 0.05), 12 + k * 0.45}, {12 + side * k, 12 + k});
      parts.push_back(stroked(std::move(arc)));
    }
  }
  return parts;
}

Parts serverRack() {
  Parts parts;
  for (const double y : {3.0, 9.5, 16.0}) {
    parts.push_back(stroked(box(3, y, 18, 5, 1.5), 1.8));
    parts.push_back(filled(circle(6.6, y + 2.5, 1)));
    parts.push_back(stroked(lines({{11, y + 2.5}, {17.6, y + 2.5}}), 1.6));
  }
  return parts;
}

Parts shippingBox() {
  return {stroked(lines(
              {{12, 2.5}, {20.5, 7}, {20.5, 17}, {12, 21.5}, {3.5, 17}, {3.5, 7}, {12, 2.5}})),
          stroked(lines({{3.8, 7.2}, {12, 11.6}, {20.2, 7.2}})),
          stroked(lines({{12, 11.6}, {12, 21.2}})), stroked(lines({{7.8, 4.9}, {16.2, 9.4}}), 1.7)};
}

Parts phone() {
  return {stroked(box(6.5, 2, 11, 20, 2.8)), stroked(lines({{10.6, 4.6}, {13.4, 4.6}}), 1.8)};
}

Parts hammer() {
  Path head;
  head.moveTo({5, 7.5})
      .curveTo({8, 3.2}, {12.5, 2.2}, {17, 4.6})
      .lineTo({20.6, 8.2})
      .lineTo({17.8, 11})
      .lineTo({15.4, 8.6})
      .lineTo({12.6, 11.4})
      .lineTo({9.6, 8.4})
      .curveTo({8.4, 7}, {6.8, 6.8}, {5, 7.5})
      .close();
  return {filled(std::move(head)), stroked(lines({{11.4, 12.6}, {4.6, 19.4}}), 3.4)};
}

Path sparkle(double x, double y, double r) {
  const double n = r * 0.22;
  Path path;
  path.moveTo({x, y - r})
      .quadTo({x + n, y - n}, {x + r, y})
      .quadTo({x + n, y + n}, {x, y + r})
      .quadTo({x - n, y + n}, {x - r, y})
      .quadTo({x - n, y - n}, {x, y - r})
      .close();
  return path;
}

Parts sparkles() {
  return {filled(sparkle(10, 13.5, 8)), filled(sparkle(18.6, 5.4, 3.8)),
          filled(sparkle(19, 19.4, 2.8))};
}

Parts cable() {
  return {
      stroked(box(8, 2.5, 8, 6.5, 1.6)), stroked(lines({{10.2, 2.6}, {10.2, 5}}), 1.6),
      stroked(lines({{13.8, 2.6}, {13.8, 5}}), 1.6), stroked(box(9.8, 9, 4.4, 3.5, 0.8)),
      stroked(
          Path().moveTo({12, 12.5}).lineTo({12, 17}).quadTo({12, 21}, {16, 21}).lineTo({19, 21}))};
}

Parts terminal() {
  return {stroked(box(2.5, 4, 19, 16, 3)), stroked(lines({{6.5, 9}, {10, 12}, {6.5, 15}})),
          stroked(lines({{12, 15.4}, {17, 15.4}}))};
}

Parts dot() {
  return {filled(circle(12, 12, 4))};
}

struct Named {
  std::string_view name;
  Parts (*draw)();
};

constexpr std::array kSymbols = {
    Named{"antenna.radiowaves.left.and.right", antenna},
    Named{"arrow.up.right", arrowUpRight},
    Named{"cable.connector", cable},
    Named{"checkmark", checkmark},
    Named{"chevron.down", chevronDown},
    Named{"chevron.right", chevronRight},
    Named{"flame", flame},
    Named{"flame.fill", flameFill},
    Named{"hammer", hammer},
    Named{"iphone.gen3", phone},
    Named{"moon.zzz", moonZzz},
    Named{"server.rack", serverRack},
    Named{"shippingbox", shippingBox},
    Named{"slider.horizontal.3", sliders},
    Named{"sparkles", sparkles},
    Named{"terminal", terminal},
    Named{"xmark", xmark},
};

const Named* find(std::string_view name) {
  const auto found = std::find_if(kSymbols.begin(), kSymbols.end(),
                                  [name](const Named& row) { return row.name == name; });
  return found == kSymbols.end() ? nullptr : &*found;
}

}  // namespace

std::vector<Symbol::Part> Symbol::parts(std::string_view name) {
  const Named* known = find(name);
  return known == nullptr ? dot() : known->draw();
}

bool Symbol::isKnown(std::string_view name) {
  return find(name) != nullptr;
}

std::vector<std::string_view> Symbol::names() {
  std::vector<std::string_view> names;
  names.reserve(kSymbols.size());
  for (const Named& row : kSymbols) names.push_back(row.name);
  return names;
}

}  // namespace embrix
